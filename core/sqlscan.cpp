// Reading SQL text: literals and comments, ":NAME" parameters.
#include "query.h"

#include <QRegularExpression>

#include <algorithm>

namespace tv {

int skipLiteralOrComment(const QString& sql, int i)
{
    const int n = static_cast<int>(sql.size());
    if (i >= n)
        return i;
    const QChar c = sql[i];
    if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
        // A doubled quote stays inside the literal.
        int j = i + 1;
        while (j < n) {
            if (sql[j] == c) {
                if (j + 1 < n && sql[j + 1] == c) {
                    j += 2;
                    continue;
                }
                break;
            }
            ++j;
        }
        return std::min(j + 1, n);
    }
    if (c == QLatin1Char('-') && i + 1 < n && sql[i + 1] == QLatin1Char('-')) {
        const int j = static_cast<int>(sql.indexOf(QLatin1Char('\n'), i));
        return j < 0 ? n : j;
    }
    if (c == QLatin1Char('/') && i + 1 < n && sql[i + 1] == QLatin1Char('*')) {
        const int j = static_cast<int>(sql.indexOf(QLatin1String("*/"), i + 2));
        return j < 0 ? n : j + 2;
    }
    return i;
}

bool isIntegerVariant(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return true;
    default:
        return false;
    }
}

bool isNumberVariant(const QVariant& v)
{
    return isIntegerVariant(v) || v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float;
}

QString convertParameters(const QString& sql, QStringList* names)
{
    static const QRegularExpression psql(
        QStringLiteral(R"(^\s*((CREATE|ALTER|RECREATE)(\s+OR\s+ALTER)?\s+(PROCEDURE|TRIGGER)|EXECUTE\s+BLOCK))"),
        QRegularExpression::CaseInsensitiveOption);
    if (psql.match(sql).hasMatch())
        return sql;

    QString out;
    out.reserve(sql.size());
    const int n = sql.size();
    auto isStart = [](QChar c) { return c.isLetter() || c == QLatin1Char('_'); };
    auto isPart = [](QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$'); };
    int i = 0;
    while (i < n) {
        const QChar c = sql[i];
        if (const int end = skipLiteralOrComment(sql, i); end > i) {
            // Literals and comments are copied verbatim.
            out += sql.mid(i, end - i);
            i = end;
        } else if (c == QLatin1Char(':') && i + 1 < n && isStart(sql[i + 1])) {
            int j = i + 1;
            while (j < n && isPart(sql[j]))
                ++j;
            if (names)
                names->append(sql.mid(i + 1, j - i - 1).toUpper());
            out += QLatin1Char('?');
            i = j;
        } else {
            out += c;
            ++i;
        }
    }
    return out;
}

} // namespace tv
