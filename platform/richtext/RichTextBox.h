#pragma once

#include "platform/prompt/Prompt.h"
#include "platform/rtf/Model.h"

#include <QTextEdit>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QTextBlock;
class QTextDocument;

namespace yrw {

namespace rtf {
struct PackagedFile;
}
namespace richtext {
class InlineRenderer;
class SpellingUnderlines;
} // namespace richtext
class SpellChecker;

/// Paragraph alignment by the numbers that the system's callers use.
enum class TextAlignment : int { Left = 0, Right = 1, Center = 2 };

/// How an embedded object shows, by the numbers that the system's callers use.
enum class ObjectDisplay : int { Content = 0, Icon = 1 };

/// The rich-text box: edits rich text that is loaded from and written as RTF.
///
/// Selection properties read the selection, or the insertion point when nothing is selected; a
/// mixed selection gives nothing (`std::nullopt`). Setting one applies it to the selection, or to
/// what is typed next, and is one undo step.
/// Colours are &H00BBGGRR. Lengths are twips (1/1440 inch).
/// Thread: the user-interface thread.
class RichTextBox : public QTextEdit {
    Q_OBJECT

public:
    explicit RichTextBox(QWidget* parent = nullptr);
    ~RichTextBox() override;

    /// The content as a whole RTF document; see platform/rtf for what is written.
    [[nodiscard]] QString TextRTF() const;
    /// Called again and again during work that may take long with the percentage done; false stops
    /// it. It may handle events: until the work is done the box shows what it showed before.
    using LoadStep = std::function<bool(int percent)>;
    /// Replaces the content by an RTF document; what cannot be shown is kept and written back.
    /// Text that is not RTF is shown as plain text. Clears undo; raises `contentChanged`.
    /// False when the content shows less than that document: it was stopped, or `shortening` tells
    /// why. It must not be saved in the document's place then.
    bool setTextRTF(const QString& rtf, const LoadStep& goesOn = {});
    /// The text without formatting; paragraphs end in CR LF except the last.
    [[nodiscard]] QString Text() const;
    struct Texts {
        QString rtf;   ///< as `TextRTF`
        QString plain; ///< as `Text`
    };
    /// Both texts at once; `progress` is called again and again with the percentage done, and must
    /// not handle events.
    [[nodiscard]] Texts texts(const std::function<void(int percent)>& progress = {}) const;
    void setText(const QString& text);
    /// True when there is neither text nor an object.
    [[nodiscard]] bool isEmpty() const;
    /// True when the last `setTextRTF` could not read its input whole, was stopped or shortened it.
    [[nodiscard]] bool isIncomplete() const;
    /// Why the last `setTextRTF` shows less than it read: more tables inside tables, or more of
    /// everything, than can be laid out; a line before the text says the same. Else empty.
    [[nodiscard]] QString shortening() const;

    [[nodiscard]] std::optional<bool> SelBold() const;
    void setSelBold(bool on);
    [[nodiscard]] std::optional<bool> SelItalic() const;
    void setSelItalic(bool on);
    [[nodiscard]] std::optional<bool> SelUnderline() const;
    void setSelUnderline(bool on);
    [[nodiscard]] std::optional<bool> SelStrikeThru() const;
    void setSelStrikeThru(bool on);
    /// The font name as asked for, also when the screen shows a substitute.
    [[nodiscard]] std::optional<QString> SelFontName() const;
    void setSelFontName(const QString& name);
    [[nodiscard]] std::optional<double> SelFontSize() const; ///< points
    void setSelFontSize(double points);
    [[nodiscard]] std::optional<int> SelColor() const;
    void setSelColor(int colour);
    [[nodiscard]] std::optional<TextAlignment> SelAlignment() const;
    void setSelAlignment(TextAlignment alignment);
    [[nodiscard]] std::optional<bool> SelBullet() const;
    void setSelBullet(bool on);
    [[nodiscard]] std::optional<int> SelIndent() const; ///< twips, 0 or more
    void setSelIndent(int twips);                       ///< below 0 counts as 0

    /// Replaces the selection by the content of an RTF document, which keeps its look.
    void setSelRTF(const QString& rtf);
    [[nodiscard]] int SelStart() const; ///< 0-based character position
    void setSelStart(int position);
    [[nodiscard]] int SelLength() const;
    void setSelLength(int length);

    /// The font and colour of an empty document and of what is typed into it.
    void setDefaultFontChoice(const FontChoice& font);
    [[nodiscard]] FontChoice defaultFontChoice() const;

    /// The number of embedded objects; an index counts them from 0 in the order of the text.
    [[nodiscard]] int objectCount() const;
    /// Embeds a file at the insertion point as one undo step. Raises `kErrorCannotCreateObject`
    /// when the file is missing, no file, unreadable or larger than `largestFile`; the text is
    /// unchanged then.
    void insertFile(const QString& path, ObjectDisplay display);
    /// The name to show for an object: its file's name, or the kind of its data.
    [[nodiscard]] QString objectName(int index) const;
    /// The object's content as a file; nothing for a link or damaged data. The label is a plain
    /// file name.
    [[nodiscard]] std::optional<rtf::PackagedFile> objectFile(int index) const;
    /// The path of the file that an object is a link to, as the object names it; else empty.
    [[nodiscard]] QString objectLink(int index) const;
    /// The picture that an object shows, as a file; nothing for one without.
    [[nodiscard]] std::optional<rtf::PackagedFile> objectPicture(int index) const;
    /// Writes an object's content into a folder that only its user may read and that is gone when
    /// the program ends; the copy is read-only and carries the object's name. Empty where
    /// `objectFile` gives nothing or the disk is full.
    [[nodiscard]] QString objectCopy(int index) const;
    /// The object shown at a point of the viewport, or -1.
    [[nodiscard]] int objectAt(const QPoint& point) const;
    /// The object that the insertion point stands on or that alone is selected, or -1.
    [[nodiscard]] int currentObject() const;
    /// Takes each file that is pasted or dropped and is no picture; it is embedded as an icon at
    /// first. Called when the drop is over, so that it may ask.
    using FileHandler = std::function<void(const QString& path)>;
    void setFileHandler(FileHandler handler);
    /// The most bytes of a file that can be embedded, and of what is pasted; 64 MB at first.
    void setLargestFile(qint64 bytes);
    [[nodiscard]] qint64 largestFile() const;

    /// Inserts a picture at the insertion point, no wider than a page's text.
    void insertPicture(const QImage& picture);
    /// Pasted text keeps its own font, size and colours when true; it takes those of the insertion
    /// point when false, which is how it begins. Text copied from a rich-text box keeps them.
    void setPasteKeepsLook(bool keep);
    /// True for data that pasting would take.
    [[nodiscard]] bool holdsContent(const QMimeData* content) const {
        return content != nullptr && canInsertFromMimeData(content);
    }
    /// Gives the steps of a long insertion: it may handle events, and where a step gives false
    /// nothing is pasted. Until it is done the box shows what it showed before and cannot be
    /// changed.
    void setPasteWatch(std::function<LoadStep()> watch);
    /// Pastes the clipboard's text without formats.
    void pastePlain();

    /// Underlines words that the checker does not know; without one, none. Formats, undo and the
    /// text itself are left alone.
    void setSpellChecker(std::shared_ptr<SpellChecker> checker);
    /// The unknown word at a point of the viewport; nothing selected where there is none.
    [[nodiscard]] QTextCursor misspellingAt(const QPoint& point) const;
    /// Looks at every word anew, after the checker has learnt one.
    void checkSpellingAgain();

    /// Paints pieces of the text in another format, which stays out of the content; replaces those
    /// marked before.
    void setMarks(const QList<ExtraSelection>& marks);

    /// A copy of the content to be painted elsewhere, with pictures and objects: laid out at this
    /// widget's resolution (`logicalDpiY`) with the metrics of paper. It must end before the box.
    [[nodiscard]] std::unique_ptr<QTextDocument> printable();

    /// The door that asks before a link opens; without one, links open unasked. Not owned.
    void setPrompt(Prompt* prompt);
    /// Opens an address; the desktop does it at first.
    using UrlOpener = std::function<void(const QUrl&)>;
    void setUrlOpener(UrlOpener opener);

Q_SIGNALS:
    /// The content changed, by the user or in code.
    void contentChanged();
    /// The selection, the insertion point or the formats there changed.
    void selectionStateChanged();
    /// The user double-clicked an embedded object.
    void objectActivated(int index);
    /// What was pasted or dropped could not be inserted; the reason in words.
    void insertionFailed(const QString& reason);

protected:
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;
    [[nodiscard]] bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;
    void dropEvent(QDropEvent* event) override;

private:
    using ParagraphChange = std::function<void(rtf::ParFormat&)>;

    bool load(rtf::Document&& source, const LoadStep& goesOn = {});
    struct Filling {
        bool whole = false;
        bool full = false; ///< it ended because it took too much memory
    };
    [[nodiscard]] Filling fill(QTextDocument& fresh, const rtf::Document& source,
                               std::vector<rtf::Inline>& inlines, const LoadStep& goesOn) const;
    void take(std::unique_ptr<QTextDocument> fresh);
    [[nodiscard]] rtf::Document plainModel(const QString& text) const;
    [[nodiscard]] rtf::Document scan(const std::function<void(int percent)>& progress = {}) const;
    void applyDefaultToEmpty();
    void changeCharacters(const QTextCharFormat& change);
    void changeParagraphs(const ParagraphChange& change);
    void changeParagraph(const QTextBlock& block, const ParagraphChange& change);
    [[nodiscard]] rtf::ParFormat paragraphOf(const QTextBlock& block) const;
    void leaveLink();
    [[nodiscard]] bool leavesList(const QKeyEvent& event) const;
    void openLink(const QString& target);
    void makeColoursReadable();
    void insertModel(rtf::Document model, bool keepLook);
    void insertInline(rtf::InlineKind kind, const QByteArray& raw);
    enum class Insertion { Whole, Stopped, TooLarge };
    /// `heightBefore`: of what is shown, in dots.
    [[nodiscard]] Insertion insertAt(QTextCursor& cursor, const rtf::Document& model,
                                     double heightBefore, const LoadStep& goesOn);
    void insertForeignHtml(const QString& html);
    void insertText(const QString& text);
    [[nodiscard]] bool mayInsert(qint64 bytes);
    void tellNotInserted(const QString& reason);
    void tellWhatIsMissing(Insertion done);
    [[nodiscard]] static qint64 memoryFor(const rtf::Document& model);
    void insertFiles(const QList<QUrl>& urls);
    void insertDroppedFile(const QString& path);
    void selectObject(int index);
    void dragObject();
    [[nodiscard]] std::vector<int> objectPositions() const;
    [[nodiscard]] const rtf::Inline* objectGroup(int index) const;
    template <typename T, typename Get>
    [[nodiscard]] std::optional<T> ofCharacters(Get get) const;
    template <typename T, typename Get>
    [[nodiscard]] std::optional<T> ofParagraphs(Get get) const;

    FontChoice m_default;
    QString m_shortening;
    rtf::Document m_header; ///< tables and kept groups of the document last loaded
    std::vector<rtf::Inline> m_inlines;
    std::unique_ptr<richtext::InlineRenderer> m_renderer;
    Prompt* m_prompt = nullptr;
    UrlOpener m_openUrl;
    FileHandler m_takeFile;
    std::function<LoadStep()> m_watchPaste;
    richtext::SpellingUnderlines* m_spelling = nullptr;
    std::optional<QPoint> m_objectPressed; ///< where the mouse went down on an object
    qint64 m_largestFile = 64LL * 1024 * 1024;
    bool m_pasteKeepsLook = false;
    bool m_isDropping = false;
    QList<ExtraSelection> m_marks;
    QList<ExtraSelection> m_readable; ///< text in view whose own colour cannot be read
};

} // namespace yrw
