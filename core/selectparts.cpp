#include "selectparts.h"

#include "query.h"

#include <QRegularExpression>

#include <vector>

namespace tv {

namespace {

struct Word {
    QString upper;
    int start;
    int end;
};

// The words of a statement at parenthesis depth 0, outside literals and
// comments; depth > 0 marks the statement as not simple when in the FROM.
std::vector<Word> topLevelWords(const QString& sql, bool* nestedInFrom, bool* commaInFrom)
{
    std::vector<Word> words;
    const int n = sql.size();
    int depth = 0;
    bool inFrom = false;
    *nestedInFrom = false;
    *commaInFrom = false;
    int i = 0;
    while (i < n) {
        const QChar c = sql[i];
        if (const int end = skipLiteralOrComment(sql, i); end > i) {
            i = end;
        } else if (c == QLatin1Char('(')) {
            if (depth == 0 && inFrom)
                *nestedInFrom = true;
            ++depth;
            ++i;
        } else if (c == QLatin1Char(')')) {
            --depth;
            ++i;
        } else if (c == QLatin1Char(',') && depth == 0 && inFrom) {
            *commaInFrom = true;
            ++i;
        } else if (c.isLetter() || c == QLatin1Char('_')) {
            int j = i + 1;
            while (j < n && (sql[j].isLetterOrNumber() || sql[j] == QLatin1Char('_') || sql[j] == QLatin1Char('$') ||
                             sql[j] == QLatin1Char('.')))
                ++j;
            if (depth == 0) {
                Word w{sql.mid(i, j - i).toUpper(), i, j};
                if (w.upper == QLatin1String("FROM"))
                    inFrom = true;
                else if (w.upper == QLatin1String("WHERE") || w.upper == QLatin1String("ORDER") ||
                         w.upper == QLatin1String("GROUP"))
                    inFrom = false;
                words.push_back(std::move(w));
            }
            i = j;
        } else {
            ++i;
        }
    }
    return words;
}

} // namespace

SelectParts parseSelect(const QString& sql)
{
    SelectParts p;
    bool nested = false;
    bool comma = false;
    const std::vector<Word> words = topLevelWords(sql, &nested, &comma);
    if (words.empty() || words.front().upper != QLatin1String("SELECT") || nested || comma)
        return p;
    static const QStringList refused = {QStringLiteral("FIRST"), QStringLiteral("SKIP"), QStringLiteral("DISTINCT"),
                                        QStringLiteral("GROUP"), QStringLiteral("HAVING"), QStringLiteral("UNION"),
                                        QStringLiteral("PLAN"), QStringLiteral("ROWS"), QStringLiteral("FOR"),
                                        QStringLiteral("WITH"), QStringLiteral("JOIN"), QStringLiteral("INTO")};
    int from = -1, where = -1, order = -1;
    for (size_t k = 0; k < words.size(); ++k) {
        const QString& w = words[k].upper;
        if (k == 1 && refused.mid(0, 3).contains(w))
            return p;
        if (refused.mid(3).contains(w))
            return p;
        if (w == QLatin1String("FROM") && from < 0)
            from = static_cast<int>(k);
        else if (w == QLatin1String("WHERE") && where < 0 && from >= 0)
            where = static_cast<int>(k);
        else if (w == QLatin1String("ORDER") && order < 0 && from >= 0)
            order = static_cast<int>(k);
    }
    if (from < 0 || (where >= 0 && order >= 0 && order < where))
        return p;
    // The words between FROM and what follows it: a table, maybe "AS", maybe an alias.
    const size_t fromWordsEnd = where >= 0 ? static_cast<size_t>(where)
                                : order >= 0 ? static_cast<size_t>(order)
                                             : words.size();
    QStringList fromWords;
    for (size_t k = static_cast<size_t>(from) + 1; k < fromWordsEnd; ++k)
        fromWords.append(sql.mid(words[k].start, words[k].end - words[k].start));
    if (fromWords.isEmpty() || fromWords.size() > 3)
        return p;
    if (fromWords.size() == 3 && fromWords[1].compare(QLatin1String("AS"), Qt::CaseInsensitive) != 0)
        return p;
    static const QRegularExpression ident(QStringLiteral("^[A-Za-z_][A-Za-z0-9_$]*$"));
    if (!ident.match(fromWords.front()).hasMatch() || !ident.match(fromWords.back()).hasMatch())
        return p;
    p.fields = sql.mid(words.front().end, words[static_cast<size_t>(from)].start - words.front().end).trimmed();
    p.table = fromWords.front().toUpper();
    if (fromWords.size() > 1)
        p.alias = fromWords.back();
    if (where >= 0) {
        const int end = order >= 0 ? words[static_cast<size_t>(order)].start : static_cast<int>(sql.size());
        p.where = sql.mid(words[static_cast<size_t>(where)].end, end - words[static_cast<size_t>(where)].end).trimmed();
    }
    if (order >= 0) {
        const size_t k = static_cast<size_t>(order);
        if (k + 1 >= words.size() || words[k + 1].upper != QLatin1String("BY"))
            return p;
        p.orderBy = sql.mid(words[k + 1].end).trimmed();
        // Ordering by position would mean another column in the key query.
        static const QRegularExpression positional(QStringLiteral("(^|,)\\s*\\d"));
        if (p.orderBy.isEmpty() || positional.match(p.orderBy).hasMatch())
            return p;
    }
    if (p.fields.isEmpty())
        return p;
    p.simple = true;
    return p;
}

} // namespace tv
