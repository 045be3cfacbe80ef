#pragma once

#include <QString>

namespace yrw {

/// The file-system object: finds and copies files by paths written with either separator and in
/// any case.
///
/// Each component of a path is looked up exactly first and then without regard to case; a
/// component that is not there keeps the spelling given. Paths that come back use '/'.
/// Thread: any; it has no state.
class FileSystem {
public:
    virtual ~FileSystem();

    /// The path as the disk spells it, as far as it exists; the rest as given.
    [[nodiscard]] virtual QString resolve(const QString& path) const;
    /// True when the path, resolved, names a file (not a folder).
    [[nodiscard]] virtual bool fileExists(const QString& path) const;
    /// Copies a file, overwriting. The copy is complete or not there at all, and writable by its
    /// owner even when the source is not. Raises `kErrorFileCopy` naming the file.
    virtual void copyFile(const QString& source, const QString& target) const;
    /// Copies a folder with all below it, overwriting; makes the target folder with the spelling
    /// given when it is not there. Raises like `copyFile`.
    virtual void copyFolder(const QString& source, const QString& target) const;
    /// Moves a file aside by giving it a name that is free ("NAME.old", "NAME.old2", …); returns
    /// that name, empty when there was no such file. Raises like `copyFile`.
    virtual QString moveAside(const QString& path) const;

    /// Gives a file that was just made the group of its folder, so that whoever shares the folder
    /// shares the file; a group that the user does not belong to is left out.
    static void takeGroupOfFolder(const QString& file);
    /// Makes a folder, and those above it that are missing, for nobody but the user; one that is
    /// there stays as it is. False when it cannot be made.
    [[nodiscard]] static bool makePrivateFolder(const QString& folder);

    /// The folder part of a full path, without the last separator.
    [[nodiscard]] static QString folderOf(const QString& path);
    /// Joins with one separator, whatever the parts end and begin with; an empty folder leaves the
    /// name alone.
    [[nodiscard]] static QString join(const QString& folder, const QString& name);
};

} // namespace yrw
