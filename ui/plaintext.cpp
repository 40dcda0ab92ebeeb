#include "plaintext.h"

#include <QSet>
#include <QTextDocument>
#include <QVector>

namespace tv::ui {

namespace {

// Windows-1252 bytes 0x80..0x9F; the rest of the code page is Latin-1.
const char16_t kCp1252High[32] = {0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD,
                                  0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

QChar fromCp1252(int byte)
{
    if (byte >= 0x80 && byte <= 0x9F)
        return QChar(kCp1252High[byte - 0x80]);
    return QChar(byte);
}

// Groups whose text is never shown.
const QSet<QString>& hiddenDestinations()
{
    static const QSet<QString> s = {
        QStringLiteral("fonttbl"),   QStringLiteral("colortbl"),   QStringLiteral("stylesheet"),
        QStringLiteral("info"),      QStringLiteral("pict"),       QStringLiteral("object"),
        QStringLiteral("header"),    QStringLiteral("headerl"),    QStringLiteral("headerr"),
        QStringLiteral("headerf"),   QStringLiteral("footer"),     QStringLiteral("footerl"),
        QStringLiteral("footerr"),   QStringLiteral("footerf"),    QStringLiteral("listtable"),
        QStringLiteral("listoverridetable"), QStringLiteral("rsidtbl"), QStringLiteral("generator"),
        QStringLiteral("xmlnstbl"),  QStringLiteral("themedata"),  QStringLiteral("colorschememapping"),
        QStringLiteral("datastore"), QStringLiteral("latentstyles"), QStringLiteral("fldinst"),
        QStringLiteral("nonshppict"), QStringLiteral("filetbl"),   QStringLiteral("revtbl"),
        QStringLiteral("pgdsctbl"),  QStringLiteral("mmathPr"),    QStringLiteral("bkmkstart"),
        QStringLiteral("bkmkend"),   QStringLiteral("template"),   QStringLiteral("operator"),
        QStringLiteral("author"),    QStringLiteral("title"),      QStringLiteral("company"),
    };
    return s;
}

QString trimBlankLines(QString s)
{
    s.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    while (!s.isEmpty() && s.back().isSpace())
        s.chop(1);
    while (!s.isEmpty() && (s.front() == QLatin1Char('\n') || s.front() == QLatin1Char('\r')))
        s.remove(0, 1);
    return s;
}

} // namespace

TextFormat detectTextFormat(const QString& text)
{
    const QString head = text.left(64).trimmed();
    if (head.startsWith(QLatin1String("{\\rtf")))
        return TextFormat::Rtf;
    if (Qt::mightBeRichText(text))
        return TextFormat::Html;
    return TextFormat::Plain;
}

QString rtfToPlainText(const QString& rtf)
{
    struct Group {
        bool hidden = false;
        int ucSkip = 1; // fallback characters after \uN
    };
    QVector<Group> stack{Group{}};
    QString out;
    int pendingSkip = 0; // fallback characters still to drop
    bool groupStart = false;
    const int n = rtf.size();

    auto put = [&](QChar c) {
        if (stack.back().hidden)
            return;
        if (pendingSkip > 0) {
            --pendingSkip;
            return;
        }
        out.append(c);
    };

    for (int i = 0; i < n; ++i) {
        const QChar c = rtf.at(i);
        if (c == QLatin1Char('{')) {
            stack.append(stack.back());
            groupStart = true;
            pendingSkip = 0;
            continue;
        }
        if (c == QLatin1Char('}')) {
            if (stack.size() > 1)
                stack.removeLast();
            groupStart = false;
            pendingSkip = 0;
            continue;
        }
        if (c == QLatin1Char('\r') || c == QLatin1Char('\n')) {
            continue;
        }
        if (c != QLatin1Char('\\')) {
            groupStart = false;
            put(c);
            continue;
        }
        // A control word or symbol.
        if (i + 1 >= n)
            break;
        const QChar s = rtf.at(i + 1);
        if (!s.isLetter()) {
            ++i;
            const bool atStart = groupStart;
            groupStart = false;
            if (s == QLatin1Char('*')) {
                if (atStart)
                    stack.back().hidden = true; // an optional destination this reader does not know
            } else if (s == QLatin1Char('\'')) {
                if (i + 2 < n) {
                    bool ok = false;
                    const int byte = rtf.mid(i + 1, 2).toInt(&ok, 16);
                    i += 2;
                    if (ok)
                        put(fromCp1252(byte));
                }
            } else if (s == QLatin1Char('~')) {
                put(QLatin1Char(' '));
            } else if (s == QLatin1Char('_')) {
                put(QLatin1Char('-'));
            } else if (s == QLatin1Char('-')) {
                // optional hyphen: invisible
            } else if (s == QLatin1Char('\r') || s == QLatin1Char('\n')) {
                put(QLatin1Char('\n'));
            } else {
                put(s); // \\ \{ \}
            }
            continue;
        }
        int j = i + 1;
        while (j < n && rtf.at(j).isLetter() && j - i <= 32)
            ++j;
        const QString word = rtf.mid(i + 1, j - i - 1);
        bool hasParam = false;
        int param = 0;
        int k = j;
        if (k < n && (rtf.at(k) == QLatin1Char('-') || rtf.at(k).isDigit())) {
            ++k;
            while (k < n && rtf.at(k).isDigit())
                ++k;
            param = rtf.mid(j, k - j).toInt(&hasParam);
        }
        if (k < n && rtf.at(k) == QLatin1Char(' '))
            ++k; // the delimiter belongs to the control word
        i = k - 1;
        const bool atStart = groupStart;
        groupStart = false;

        if (atStart && hiddenDestinations().contains(word)) {
            stack.back().hidden = true;
        } else if (word == QLatin1String("par") || word == QLatin1String("line") ||
                   word == QLatin1String("sect") || word == QLatin1String("page") ||
                   word == QLatin1String("row")) {
            put(QLatin1Char('\n'));
        } else if (word == QLatin1String("tab") || word == QLatin1String("cell")) {
            put(QLatin1Char('\t'));
        } else if (word == QLatin1String("uc") && hasParam) {
            stack.back().ucSkip = param;
        } else if (word == QLatin1String("u") && hasParam) {
            const int code = param < 0 ? param + 65536 : param;
            put(QChar(static_cast<char16_t>(code)));
            pendingSkip = stack.back().ucSkip;
        } else if (word == QLatin1String("emdash")) {
            put(QChar(0x2014));
        } else if (word == QLatin1String("endash")) {
            put(QChar(0x2013));
        } else if (word == QLatin1String("bullet")) {
            put(QChar(0x2022));
        } else if (word == QLatin1String("lquote")) {
            put(QChar(0x2018));
        } else if (word == QLatin1String("rquote")) {
            put(QChar(0x2019));
        } else if (word == QLatin1String("ldblquote")) {
            put(QChar(0x201C));
        } else if (word == QLatin1String("rdblquote")) {
            put(QChar(0x201D));
        }
        // Every other control word (formatting) has no text.
    }
    return trimBlankLines(out);
}

QString htmlToPlainText(const QString& html)
{
    QTextDocument doc;
    doc.setHtml(html);
    QString text = doc.toPlainText();
    text.remove(QChar::ObjectReplacementCharacter);
    text.replace(QChar::ParagraphSeparator, QLatin1Char('\n'));
    text.replace(QChar::LineSeparator, QLatin1Char('\n'));
    text.replace(QChar::Nbsp, QLatin1Char(' '));
    return trimBlankLines(text);
}

QString plainTextOf(const QString& text)
{
    switch (detectTextFormat(text)) {
    case TextFormat::Rtf:
        return rtfToPlainText(text);
    case TextFormat::Html:
        return htmlToPlainText(text);
    case TextFormat::Plain:
        break;
    }
    return trimBlankLines(text);
}

} // namespace tv::ui
