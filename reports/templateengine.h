#pragma once

#include <QString>
#include <QVariantMap>

#include <functional>

namespace tv::reports {

// Fills a Mustache text with maps, lists and plain values. Empty texts,
// NULLs and false read as false in a section, so "{{#campo}}...{{/campo}}"
// hides what has no value; dates print as dd/mm/yyyy. Escaped values keep
// their line breaks as <br/>. Returns false and sets *error (the parser's
// message) when the text is not a valid template.
//
// "{{> nombre}}" includes another template (a shared letterhead or style);
// `partials` gives its text, or throws when it cannot.
using PartialLoader = std::function<QString(const QString& name)>;
bool renderTemplateText(const QString& templateText, const QVariantMap& data, QString* result, QString* error,
                        const PartialLoader& partials = {});

} // namespace tv::reports
