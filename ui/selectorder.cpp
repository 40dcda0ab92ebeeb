#include "selectorder.h"

#include "query.h"

#include <QStringList>

#include <vector>

namespace tv::ui {

namespace {

struct SqlWord {
    QString upper;
    int start;
    int end;
};

// Words at parenthesis depth 0, outside literals and comments.
std::vector<SqlWord> topLevelWords(const QString& sql)
{
    std::vector<SqlWord> words;
    const int n = int(sql.size());
    int depth = 0;
    int i = 0;
    while (i < n) {
        const QChar c = sql[i];
        if (const int end = skipLiteralOrComment(sql, i); end > i) {
            i = end;
        } else if (c == QLatin1Char('(')) {
            ++depth;
            ++i;
        } else if (c == QLatin1Char(')')) {
            --depth;
            ++i;
        } else if (c.isLetter() || c == QLatin1Char('_')) {
            int j = i + 1;
            while (j < n && (sql[j].isLetterOrNumber() || sql[j] == QLatin1Char('_') || sql[j] == QLatin1Char('$') ||
                             sql[j] == QLatin1Char('.')))
                ++j;
            if (depth == 0)
                words.push_back({sql.mid(i, j - i).toUpper(), i, j});
            i = j;
        } else {
            ++i;
        }
    }
    return words;
}

// (OrderSpan and findOrder are declared in selectorder.h.)
// True when the text's last characters are a "--" comment with no line end.
bool endsInLineComment(const QString& sql)
{
    const int n = int(sql.size());
    int i = 0;
    bool inComment = false;
    while (i < n) {
        const int end = skipLiteralOrComment(sql, i);
        if (end > i) {
            inComment = sql.mid(i, 2) == QLatin1String("--") && end >= n && !sql.endsWith(QLatin1Char('\n'));
            i = end;
        } else {
            inComment = false;
            ++i;
        }
    }
    return inComment;
}

} // namespace

OrderSpan findOrder(const QString& sql)
{
    static const QStringList tailWords = {QStringLiteral("ROWS"), QStringLiteral("OFFSET"), QStringLiteral("FETCH"),
                                          QStringLiteral("FOR"), QStringLiteral("WITH")};
    const std::vector<SqlWord> words = topLevelWords(sql);
    OrderSpan span;
    size_t searchFrom = 0;
    for (size_t k = 0; k < words.size(); ++k) {
        if (words[k].upper == QLatin1String("FROM"))
            searchFrom = k + 1;
        if (words[k].upper == QLatin1String("ORDER") && k + 1 < words.size() && words[k + 1].upper == QLatin1String("BY")) {
            span.orderStart = words[k].start;
            span.termsStart = words[k + 1].end;
            searchFrom = k + 2;
        }
    }
    span.tailStart = int(sql.size());
    for (size_t k = searchFrom; k < words.size(); ++k) {
        if (tailWords.contains(words[k].upper)) {
            span.tailStart = words[k].start;
            break;
        }
    }
    return span;
}

QString withoutTrailingSemicolon(const QString& sql)
{
    QString s = sql.trimmed();
    while (s.endsWith(QLatin1Char(';')))
        s = s.left(s.size() - 1).trimmed();
    return s;
}


QString selectOrderedBy(const QString& sql, const QString& orderBy)
{
    const QString s = withoutTrailingSemicolon(sql);
    const OrderSpan span = findOrder(s);
    const int headEnd = span.orderStart >= 0 ? span.orderStart : span.tailStart;
    QString head = s.left(headEnd);
    // Blanks go, line ends stay: a "--" comment must not swallow the ordering.
    while (!head.isEmpty() && (head.back() == QLatin1Char(' ') || head.back() == QLatin1Char('\t')))
        head.chop(1);
    if (endsInLineComment(head))
        head += QLatin1Char('\n');
    QString out = head + QStringLiteral(" ORDER BY ") + orderBy.trimmed();
    const QString tail = s.mid(span.tailStart).trimmed();
    if (!tail.isEmpty())
        out += QLatin1Char(' ') + tail;
    return out;
}

} // namespace tv::ui
