#include "templateengine.h"

#include "reportformat.h"

#include <QDate>
#include <QRegularExpression>
#include <QSet>
#include <QDateTime>
#include <QStringList>

#include <kainjow/mustache.hpp>

namespace tv::reports {

namespace {

using kainjow::mustache::data;

std::string utf8(const QString& s)
{
    return s.toStdString();
}

data convert(const QVariant& v)
{
    if (!v.isValid() || v.isNull())
        return data(false);
    switch (v.typeId()) {
    case QMetaType::Bool:
        return data(v.toBool());
    case QMetaType::QString: {
        const QString s = v.toString();
        return s.trimmed().isEmpty() ? data(false) : data(utf8(s));
    }
    case QMetaType::QDate:
    case QMetaType::QDateTime:
        return data(utf8(fechaHora(v)));
    case QMetaType::Double:
    case QMetaType::Float:
        return data(utf8(numero(v.toDouble(), 2)));
    case QMetaType::QVariantMap: {
        data obj(data::type::object);
        const QVariantMap m = v.toMap();
        for (auto it = m.cbegin(); it != m.cend(); ++it)
            obj.set(utf8(it.key()), convert(it.value()));
        return obj;
    }
    case QMetaType::QVariantHash: {
        data obj(data::type::object);
        const QVariantHash m = v.toHash();
        for (auto it = m.cbegin(); it != m.cend(); ++it)
            obj.set(utf8(it.key()), convert(it.value()));
        return obj;
    }
    case QMetaType::QVariantList: {
        data list(data::type::list);
        for (const QVariant& item : v.toList())
            list.push_back(convert(item));
        return list;
    }
    case QMetaType::QStringList: {
        data list(data::type::list);
        for (const QString& item : v.toStringList())
            list.push_back(data(utf8(item)));
        return list;
    }
    default:
        break;
    }
    const QString s = v.toString();
    return s.isEmpty() ? data(false) : data(utf8(s));
}

std::string escapeHtml(const std::string& s)
{
    std::string out;
    out.reserve(s.size() + 16);
    for (std::size_t i = 0; i < s.size(); ++i) {
        const char c = s[i];
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\'': out += "&#39;"; break;
        case '\r':
            if (i + 1 < s.size() && s[i + 1] == '\n')
                ++i;
            out += "<br/>";
            break;
        case '\n': out += "<br/>"; break;
        default: out += c;
        }
    }
    return out;
}

} // namespace

bool renderTemplateText(const QString& templateText, const QVariantMap& values, QString* result, QString* error,
                        const PartialLoader& partials)
{
    kainjow::mustache::mustache tmpl(utf8(templateText));
    if (!tmpl.is_valid()) {
        if (error)
            *error = QString::fromStdString(tmpl.error_message());
        return false;
    }
    tmpl.set_custom_escape(escapeHtml);
    data root = convert(QVariant(values));
    if (partials) {
        // Partials are looked up by name in the data; load every one named,
        // and those they name in turn, before rendering.
        static const QRegularExpression tag(QStringLiteral(R"(\{\{>\s*([A-Za-z0-9_.-]+)\s*\}\})"));
        QStringList pending;
        QSet<QString> loaded;
        for (auto it = tag.globalMatch(templateText); it.hasNext();)
            pending.append(it.next().captured(1));
        while (!pending.isEmpty()) {
            const QString name = pending.takeFirst();
            if (loaded.contains(name))
                continue;
            loaded.insert(name);
            const QString text = partials(name);
            for (auto it = tag.globalMatch(text); it.hasNext();)
                pending.append(it.next().captured(1));
            const std::string body = utf8(text);
            root.set(utf8(name), data(kainjow::mustache::partial([body]() { return body; })));
        }
    }
    const std::string out = tmpl.render(root);
    if (!tmpl.is_valid()) {
        if (error)
            *error = QString::fromStdString(tmpl.error_message());
        return false;
    }
    if (result)
        *result = QString::fromStdString(out);
    return true;
}

} // namespace tv::reports
