#include "sqlscript.h"

#include "query.h"
#include "transaction.h"

#include <QRegularExpression>

namespace tv {

QStringList splitSqlScript(const QString& script)
{
    QStringList out;
    QString term = QStringLiteral(";");
    QString cur;
    const int n = script.size();
    int i = 0;
    auto flush = [&] {
        const QString s = cur.trimmed();
        cur.clear();
        if (s.isEmpty())
            return;
        static const QRegularExpression setTerm(QStringLiteral(R"(^SET\s+TERM\s+(\S+)\s*$)"),
                                                QRegularExpression::CaseInsensitiveOption);
        static const QRegularExpression dropped(QStringLiteral(R"(^SET\s+(SQL\s+DIALECT|NAMES|AUTODDL)\b)"),
                                                QRegularExpression::CaseInsensitiveOption);
        const QRegularExpressionMatch m = setTerm.match(s);
        if (m.hasMatch()) {
            term = m.captured(1);
            return;
        }
        if (dropped.match(s).hasMatch())
            return;
        out.append(s);
    };
    while (i < n) {
        const QChar c = script[i];
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            int j = i + 1;
            while (j < n) {
                if (script[j] == c) {
                    if (j + 1 < n && script[j + 1] == c) {
                        j += 2;
                        continue;
                    }
                    break;
                }
                ++j;
            }
            cur += script.mid(i, j - i + 1);
            i = j + 1;
        } else if (c == QLatin1Char('-') && i + 1 < n && script[i + 1] == QLatin1Char('-')) {
            int j = script.indexOf(QLatin1Char('\n'), i);
            i = j < 0 ? n : j;
        } else if (c == QLatin1Char('/') && i + 1 < n && script[i + 1] == QLatin1Char('*')) {
            int j = script.indexOf(QLatin1String("*/"), i + 2);
            i = j < 0 ? n : j + 2;
            cur += QLatin1Char(' ');
        } else if (script.mid(i, term.size()) == term) {
            i += term.size();
            flush();
        } else {
            // "SET TERM ^ ;" ends with the old terminator, handled by flush.
            cur += c;
            ++i;
        }
    }
    flush();
    return out;
}

void runSqlScript(Database& db, Transaction& tr, const QString& script)
{
    static const QRegularExpression ddl(QStringLiteral(R"(^(CREATE|ALTER|DROP|RECREATE|DECLARE)\b)"),
                                        QRegularExpression::CaseInsensitiveOption);
    for (const QString& s : splitSqlScript(script)) {
        static const QRegularExpression commit(QStringLiteral(R"(^COMMIT(\s+WORK)?$)"),
                                               QRegularExpression::CaseInsensitiveOption);
        if (commit.match(s).hasMatch()) {
            tr.commit();
            continue;
        }
        Query::execute(db, tr, s);
        if (ddl.match(s).hasMatch())
            tr.commit();
    }
    tr.commit();
}

} // namespace tv
