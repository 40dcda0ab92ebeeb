#include "documentrenderer.h"

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrinter>
#include <QRegularExpression>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextFrame>
#include <QUrl>

namespace tv::reports {

namespace {

// Page furniture, in millimetres and points.
constexpr double kMarginSide = 16.0;
constexpr double kMarginTop = 16.0;
constexpr double kMarginBottom = 18.0;
constexpr double kHeaderBaseline = 10.0;
constexpr double kHeaderRule = 12.0;
constexpr double kFooterRule = 12.5;   // from the bottom edge
constexpr double kFooterTop = 11.9;    // the footer's lines sit between these two
constexpr double kFooterBottom = 6.0;
constexpr double kFooterGap = 4.0;     // between the footer text and the page number
const QColor kAccent(0x1f, 0x3b, 0x5c);
const QColor kGrey(0x6b, 0x72, 0x80);
const QColor kRule(0xc8, 0xcd, 0xd4);

QString plainText(const QString& html)
{
    return QTextDocumentFragment::fromHtml(html).toPlainText().simplified();
}

QString metaContent(const QString& html, const QString& name)
{
    const QRegularExpression re(
        QStringLiteral("<meta\\s+name\\s*=\\s*\"%1\"\\s+content\\s*=\\s*\"([^\"]*)\"\\s*/?>").arg(name),
        QRegularExpression::CaseInsensitiveOption);
    const auto m = re.match(html);
    return m.hasMatch() ? plainText(m.captured(1)) : QString();
}

} // namespace

FooterLayout layoutFooter(const QString& footer, const QString& pageNumber,
                          const QFontMetricsF& footerMetrics, const QFontMetricsF& pageNumberMetrics,
                          const QRectF& area, double gap)
{
    FooterLayout out;
    const double numberWidth = pageNumberMetrics.horizontalAdvance(pageNumber);
    const double available = qMax(0.0, area.width() - numberWidth - gap);
    const double lineHeight = footerMetrics.height();
    const int maxLines = qMax(1, int(area.height() / footerMetrics.lineSpacing()));

    // Greedy word wrap; what the last line cannot hold is elided.
    const QStringList words = footer.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QString current;
    qsizetype lineStart = 0;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString candidate = current.isEmpty() ? words.at(i) : current + QLatin1Char(' ') + words.at(i);
        if (current.isEmpty() || footerMetrics.horizontalAdvance(candidate) <= available) {
            current = candidate;
            continue;
        }
        if (out.lines.size() + 1 == maxLines) {
            current = QStringList(words.mid(lineStart)).join(QLatin1Char(' '));
            break;
        }
        out.lines.append(current);
        current = words.at(i);
        lineStart = i;
    }
    if (!current.isEmpty())
        out.lines.append(current);
    for (QString& line : out.lines)
        line = footerMetrics.elidedText(line, Qt::ElideRight, available);

    const int shown = qMax(1, int(out.lines.size()));
    const double spacing = footerMetrics.lineSpacing();
    const double blockTop = area.top() + (area.height() - (shown - 1) * spacing - lineHeight) / 2;
    for (qsizetype i = 0; i < out.lines.size(); ++i)
        out.lineRects.append(QRectF(area.left(), blockTop + i * spacing, available, lineHeight));
    const double baseline = blockTop + (shown - 1) * spacing + footerMetrics.ascent();
    out.pageNumber = QRectF(area.right() - numberWidth, baseline - pageNumberMetrics.ascent(), numberWidth,
                            pageNumberMetrics.height());
    return out;
}

DocumentRenderer::DocumentRenderer(const QString& html, const QString& baseFolder) : mBaseFolder(baseFolder)
{
    // Big photographs travel as data: URIs; decode each once and refer to it
    // by a short resource name so the layout never parses base64 again.
    static const QRegularExpression dataUri(
        QStringLiteral("src\\s*=\\s*\"data:image/[A-Za-z0-9.+-]+;base64,([A-Za-z0-9+/=\\s]*)\""));
    QString out;
    out.reserve(html.size());
    qsizetype last = 0;
    auto it = dataUri.globalMatch(html);
    while (it.hasNext()) {
        const auto m = it.next();
        out += QStringView(html).mid(last, m.capturedStart() - last);
        const QImage img = QImage::fromData(QByteArray::fromBase64(m.captured(1).toLatin1()));
        const QString name = QStringLiteral("tvimagen://%1").arg(mImages.size() + 1);
        mImages.append({name, img});
        out += QStringLiteral("src=\"%1\"").arg(name);
        last = m.capturedEnd();
    }
    out += QStringView(html).mid(last);
    mHtml = out;

    static const QRegularExpression titleRe(QStringLiteral("<title>(.*?)</title>"),
                                            QRegularExpression::CaseInsensitiveOption |
                                                QRegularExpression::DotMatchesEverythingOption);
    const auto t = titleRe.match(mHtml);
    if (t.hasMatch())
        mTitle = plainText(t.captured(1));
    mHeader = metaContent(mHtml, QStringLiteral("cabecera"));
    mFooter = metaContent(mHtml, QStringLiteral("pie"));
    mLandscape = metaContent(mHtml, QStringLiteral("orientacion")).compare(QLatin1String("horizontal"),
                                                                            Qt::CaseInsensitive) == 0;
}

void DocumentRenderer::setDefaults(const QString& header, const QString& footer)
{
    if (mHeader.isEmpty())
        mHeader = header;
    if (mFooter.isEmpty())
        mFooter = footer;
}

void DocumentRenderer::preparePrinter(QPrinter& printer) const
{
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(mLandscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    printer.setFullPage(true);
    if (!mTitle.isEmpty())
        printer.setDocName(mTitle);
    printer.setCreator(QStringLiteral("tejavista"));
}

void DocumentRenderer::setUpDocument(QTextDocument& doc, QPrinter& printer) const
{
    // Laid out for the printer itself: points and pixel sizes scale to its resolution.
    doc.documentLayout()->setPaintDevice(&printer);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(9);
    doc.setDefaultFont(font);
    if (!mBaseFolder.isEmpty())
        doc.setBaseUrl(QUrl::fromLocalFile(QDir(mBaseFolder).absolutePath() + QLatin1Char('/')));
    for (const auto& [name, img] : mImages)
        doc.addResource(QTextDocument::ImageResource, QUrl(name), img);
    doc.setHtml(mHtml);
    for (const auto& [name, img] : mImages)
        doc.addResource(QTextDocument::ImageResource, QUrl(name), img);

    // Frame margins are given at 96 dpi and scaled to the device by the
    // layout; the page size is in device pixels.
    const double layoutDpmm = 96.0 / 25.4;
    const QRectF paper = printer.pageLayout().fullRectPixels(printer.resolution());
    QTextFrameFormat root = doc.rootFrame()->frameFormat();
    root.setLeftMargin(kMarginSide * layoutDpmm);
    root.setRightMargin(kMarginSide * layoutDpmm);
    root.setTopMargin(kMarginTop * layoutDpmm);
    root.setBottomMargin(kMarginBottom * layoutDpmm);
    root.setPadding(0);
    root.setBorder(0);
    doc.rootFrame()->setFrameFormat(root);
    doc.setPageSize(paper.size());
}

int DocumentRenderer::print(QPrinter& printer) const
{
    // Paper size and orientation stay as the caller (or the user in a
    // printer dialog) left them; the margins are this renderer's own.
    printer.setFullPage(true);
    if (!mTitle.isEmpty())
        printer.setDocName(mTitle);
    QPainter painter;
    if (!painter.begin(&printer))
        return -1;

    QTextDocument doc;
    setUpDocument(doc, printer);

    const double dpmm = printer.resolution() / 25.4;
    const QRectF paper = printer.pageLayout().fullRectPixels(printer.resolution());
    const int pages = qMax(1, doc.pageCount());
    const double left = kMarginSide * dpmm;
    const double right = paper.width() - kMarginSide * dpmm;

    QFont small(QStringLiteral("DejaVu Sans"));
    small.setPointSizeF(7);
    QFont smallBold = small;
    smallBold.setBold(true);

    for (int page = 0; page < pages; ++page) {
        if (page > 0)
            printer.newPage();

        painter.save();
        const QRectF view(0, page * paper.height(), paper.width(), paper.height());
        painter.translate(0, -view.top());
        painter.setClipRect(view);
        QAbstractTextDocumentLayout::PaintContext ctx;
        ctx.clip = view;
        ctx.palette.setColor(QPalette::Text, Qt::black);
        doc.documentLayout()->draw(&painter, ctx);
        painter.restore();

        painter.save();
        painter.setPen(QPen(kRule, 0.25 * dpmm));
        // Running header: the letterhead of the first page is the template's own.
        if (page > 0) {
            const QRectF band(left, 0, right - left, kHeaderBaseline * dpmm);
            // The title keeps its place; a long agency name gives way to it.
            const double titleWidth = QFontMetricsF(small, &printer).horizontalAdvance(mTitle);
            const double headerWidth = qMax(0.0, band.width() - titleWidth - kFooterGap * dpmm);
            painter.setFont(smallBold);
            painter.setPen(kAccent);
            const QString header =
                QFontMetricsF(smallBold, &printer).elidedText(mHeader, Qt::ElideRight, headerWidth);
            painter.drawText(QRectF(band.left(), band.top(), headerWidth, band.height()),
                             Qt::AlignLeft | Qt::AlignBottom | Qt::TextSingleLine, header);
            painter.setFont(small);
            painter.setPen(kGrey);
            painter.drawText(band, Qt::AlignRight | Qt::AlignBottom, mTitle);
            painter.setPen(QPen(kRule, 0.25 * dpmm));
            painter.drawLine(QPointF(left, kHeaderRule * dpmm), QPointF(right, kHeaderRule * dpmm));
        }
        const double ruleY = paper.height() - kFooterRule * dpmm;
        painter.drawLine(QPointF(left, ruleY), QPointF(right, ruleY));
        QString footer = mFooter;
        footer.replace(QLatin1String("[pagina]"), QString::number(page + 1))
            .replace(QLatin1String("[paginas]"), QString::number(pages));
        const QString pageNumber = QStringLiteral("Página %1 de %2").arg(page + 1).arg(pages);
        const QRectF area(left, paper.height() - kFooterTop * dpmm, right - left,
                          (kFooterTop - kFooterBottom) * dpmm);
        const FooterLayout foot = layoutFooter(footer, pageNumber, QFontMetricsF(small, &printer),
                                               QFontMetricsF(smallBold, &printer), area, kFooterGap * dpmm);
        painter.setFont(small);
        painter.setPen(kGrey);
        for (qsizetype i = 0; i < foot.lines.size(); ++i)
            painter.drawText(foot.lineRects.at(i), Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine,
                             foot.lines.at(i));
        painter.setFont(smallBold);
        painter.setPen(kAccent);
        painter.drawText(foot.pageNumber, Qt::AlignRight | Qt::AlignTop | Qt::TextSingleLine, pageNumber);
        painter.restore();
    }
    painter.end();
    return pages;
}

} // namespace tv::reports
