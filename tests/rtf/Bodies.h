#pragma once

#include <QByteArray>

namespace yrw::rtf {

inline const QByteArray kHead =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Comic Sans MS;}"
    "{\\f1\\fnil\\fcharset2 Symbol;}{\\f4\\froman\\fcharset238 Times\\'b3;}}"
    "{\\colortbl ;\\red255\\green0\\blue0;\\red1\\green2\\blue3;}\\viewkind4\\uc1\\pard\\f0\\fs20 ";

/// Bodies of documents that are read, shown and written without losing anything.
inline const char* const kBodies[] = {
    "",
    "plain\\par",
    "a\\b b\\i c\\b0 d\\i0\\ul e\\ulnone\\strike f\\strike0\\super g\\nosupersub\\sub h\\par",
    "\\cf1 red\\cf2\\highlight1 x\\cf0\\highlight0 y\\fs31 z\\f4 \\'b3\\u-10179?\\u-8704?\\f1\\'b7",
    "\\b 1\\b0 2\\fs20 24\\par -5\\par",
    "\\qc c\\par\\pard\\qr r\\par\\pard\\qj "
    "j\\par\\pard\\li720\\fi-360\\ri100\\sb60\\sa70\\tx500\\tx900\\sl360\\slmult1 x\\par",
    "a\\line b\\tab c\\~d\\-e\\_f\\{\\}\\\\ \\'a0\\'85\\par",
    "\\pard{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}\\fi-"
    "360\\li720 "
    "a\\par{\\pntext\\f1\\'B7\\tab}b\\par\\pard c\\par",
    "\\pard{\\*\\pn\\pnlvlbody\\pndec\\pnstart5{\\pntxtb (}{\\pntxta )}}\\fi-360\\li360 a\\par "
    "b\\par"
    "\\pard{\\*\\pn\\pnlvlbody\\pnlcltr{\\pntxta .}}a\\par\\pard{\\*\\pn\\pnlvlbody\\pnucltr}a\\par"
    "\\pard{\\*\\pn\\pnlvlbody\\pnlcrm}a\\par\\pard{\\*\\pn\\pnlvlbody\\pnucrm}a\\par\\pard b",
    "t\\par\\trowd\\trgaph70\\trleft50\\clbrdrt\\brdrs\\cellx1000\\cellx3000\\pard\\intbl "
    "a\\cell\\qr b\\par"
    "\\b c\\b0\\cell\\row\\intbl d\\cell\\cell\\row\\pard after\\par",
    "\\trowd\\cellx1000\\pard\\intbl last is a table\\cell\\row",
    "\\trowd\\cellx1000\\cellx2000\\intbl one of two\\cell\\row\\pard x",
    "\\trowd\\cellx4000\\cellx9000\\pard\\intbl a\\par\\pard\\intbl\\itap2 "
    "b\\nestcell{\\nonesttables\\par}"
    "c\\par d\\nestcell{\\nonesttables\\par}{\\*\\nesttableprops\\trowd\\trgaph50\\clbrdrt\\brdrs"
    "\\cellx1000\\cellx2500\\nestrow}{\\nonesttables\\par}e\\nestcell{\\*"
    "\\nesttableprops\\trowd\\cellx900"
    "\\nestrow}\\pard\\intbl\\itap1\\cell\\pard\\intbl "
    "f\\cell\\trowd\\cellx4000\\cellx9000\\row\\pard after",
    "\\trowd\\cellx9000\\pard\\intbl\\itap4 "
    "deep\\nestcell{\\*\\nesttableprops\\trowd\\cellx99\\nestrow}"
    "\\pard\\intbl\\itap3 "
    "x\\nestcell{\\*\\nesttableprops\\trowd\\cellx199\\nestrow}\\pard\\intbl\\itap2 y"
    "\\nestcell two\\nestcell{\\*\\nesttableprops\\trowd\\cellx299\\nestrow}\\pard\\intbl "
    "z\\cell\\row\\pard",
    "\\trowd\\cellx9000\\intbl{\\itap3 "
    "torn\\nestcell}{\\*\\nesttableprops\\nestrow}x\\row\\pard\\itap2 open\\par"
    "\\pard stray\\nestrow\\par",
    "{\\field{\\*\\fldinst{HYPERLINK \"http://a.example/\"}}{\\fldrslt{\\ul\\cf1 link\\b bold}}} "
    "after\\par",
    "a{\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}{\\field{\\*\\fldinst EMPTY}{\\fldrslt}}b",
    "a{\\pict\\pngblip\\picwgoal100\\pichgoal50 89504e47}b{\\pict\\wmetafile8\\bin3 {}{}c",
    "a{\\object\\objemb\\objw100\\objh100{\\*\\objclass Package}{\\*\\objdata "
    "0105}{\\result{\\pict\\wmetafile8 00}}}b",
    "{\\*\\themedata 1234}{\\info{\\author A}}{\\stylesheet{\\s3 h;}}\\s3 x{\\*\\bkmkstart "
    "m}y\\page z{\\v hidden}\\par",
    "x{\\footnote \xe9\\bin2 \xff\\}y",
    "{\\header h}\\rtlpar\\f4 \\'b3\\par\\par\\par",
    "a{\\*\\bkmkstart m}b{\\footnote note \\'e9}c{\\pict\\wmetafile8 0102}d\\page e{\\v x}\\par",
    "{\\object\\objemb{\\*\\objclass Odd}{\\*\\objdata 01}{\\result r}}",
    "x{\\field{\\*\\fldinst DATE}{\\fldrslt 1 May}}y\\par",
    "\\pard{\\*\\pn\\pnlvlbody\\pnucrm\\pnstart1{\\pntxta )}}\\fi-360\\li720 a\\par b\\par\\pard c",
    "\\pard{\\*\\pn\\pnlvlblt{\\pntxtb\\'B7}}\\fi-360\\li720 "
    "a\\par\\pard\\fi-100\\li500\\sb20\\tx90 b",
    "\\trowd\\cellx1005\\pard\\intbl first\\cell\\row\\pard\\par\\trowd\\cellx2010\\pard\\intbl "
    "z\\cell\\row\\pard x",
    "\\trowd\\cellx1000\\cellx3000\\pard\\intbl a\\cell b\\cell\\row\\trowd\\trgaph50\\cellx1500"
    "\\cellx2500\\cellx4000\\intbl c\\cell d\\cell e\\cell\\row\\pard x", // rows differ
    "\\trowd\\cellx5000\\cellx9000\\pard\\intbl a\\par\\pard\\intbl\\itap2 b\\nestcell c\\nestcell"
    "{\\*\\nesttableprops\\trowd\\trgaph60\\clbrdrt\\brdrs\\cellx1005\\cellx2010\\nestrow}"
    "d\\nestcell\\nestcell"
    "{\\*\\nesttableprops\\trowd\\cellx1005\\cellx2010\\nestrow}\\pard\\intbl\\par "
    "e\\par\\par\\itap2 f\\nestcell"
    "{\\*\\nesttableprops\\trowd\\cellx1005\\nestrow}\\pard\\intbl\\cell\\itap3 g\\nestcell"
    "{\\*\\nesttableprops\\trowd\\cellx900\\nestrow}\\itap2\\nestcell{\\*"
    "\\nesttableprops\\trowd\\cellx1005"
    "\\nestrow}\\pard\\intbl h\\cell\\row\\pard after",
    "one\\par\\par\\par two\\line three\\tab x\\par\\par",
};

} // namespace yrw::rtf
