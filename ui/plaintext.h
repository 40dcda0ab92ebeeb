#pragma once

#include <QString>

namespace tv::ui {

// Rich-text columns written over the years hold RTF (older editors), HTML
// (the rich text box) or plain text. These turn any of them into the plain
// text that searches, listings and portal feeds use.
enum class TextFormat { Plain, Html, Rtf };

TextFormat detectTextFormat(const QString& text);
// Keeps the visible text of an RTF document: paragraphs become line breaks,
// \'hh and \uN escapes become characters, font tables, pictures, field
// instructions and other hidden groups are dropped.
QString rtfToPlainText(const QString& rtf);
QString htmlToPlainText(const QString& html);
// Any of the three formats; surrounding blank lines removed.
QString plainTextOf(const QString& text);

} // namespace tv::ui
