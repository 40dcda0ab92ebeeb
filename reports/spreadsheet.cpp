#include "report.h"

#include "desktophooks.h"
#include "dialogs.h"
#include "query.h"

#include <QAbstractItemModel>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <xlsxwriter.h>

#include <algorithm>

namespace tv::reports {

namespace {

bool isWhole(const QVariant& v)
{
    return v.typeId() != QMetaType::Double && v.typeId() != QMetaType::Float;
}

lxw_datetime toLxw(const QDateTime& dt)
{
    lxw_datetime d{};
    d.year = dt.date().year();
    d.month = dt.date().month();
    d.day = dt.date().day();
    d.hour = dt.time().hour();
    d.min = dt.time().minute();
    d.sec = dt.time().second();
    return d;
}

QString sheetName(const QString& name)
{
    QString n = name.trimmed().isEmpty() ? QStringLiteral("Datos") : name.trimmed();
    for (const QChar c : QStringLiteral("[]:*?/\\"))
        n.replace(c, QLatin1Char(' '));
    return n.left(31);
}

// The width a value needs, in characters.
int displayLength(const QVariant& v)
{
    if (v.typeId() == QMetaType::QDate)
        return 10;
    if (v.typeId() == QMetaType::QDateTime)
        return v.toDateTime().time() == QTime(0, 0) ? 10 : 16;
    if (isNumberVariant(v))
        return int(QString::number(v.toDouble(), 'f', isWhole(v) ? 0 : 2).size() + (isWhole(v) ? 0 : 2));
    int longest = 0;
    for (const QString& line : v.toString().split(QLatin1Char('\n')))
        longest = std::max(longest, int(line.size()));
    return longest;
}

} // namespace

void writeSpreadsheet(const Sheet& sheet, const QString& xlsxPath)
{
    const QByteArray path = QFile::encodeName(xlsxPath);
    lxw_workbook* wb = workbook_new(path.constData());
    if (!wb)
        throw ReportError(QStringLiteral("No se ha podido crear la hoja de cálculo %1").arg(xlsxPath));
    const QByteArray name = sheetName(sheet.name).toUtf8();
    lxw_worksheet* ws = workbook_add_worksheet(wb, name.constData());

    lxw_format* title = workbook_add_format(wb);
    format_set_bold(title);
    format_set_bg_color(title, 0xDCE3EC);
    format_set_bottom(title, LXW_BORDER_THIN);
    lxw_format* date = workbook_add_format(wb);
    format_set_num_format(date, "dd/mm/yyyy");
    format_set_align(date, LXW_ALIGN_LEFT);
    lxw_format* dateTime = workbook_add_format(wb);
    format_set_num_format(dateTime, "dd/mm/yyyy hh:mm");
    format_set_align(dateTime, LXW_ALIGN_LEFT);
    lxw_format* whole = workbook_add_format(wb);
    format_set_num_format(whole, "0");
    lxw_format* decimal = workbook_add_format(wb);
    format_set_num_format(decimal, "#,##0.00");
    lxw_format* wrap = workbook_add_format(wb);
    format_set_text_wrap(wrap);
    format_set_align(wrap, LXW_ALIGN_VERTICAL_TOP);

    int columns = int(sheet.titles.size());
    for (const auto& row : sheet.rows)
        columns = std::max(columns, int(row.size()));
    QVector<int> widths(columns, 6);

    for (int c = 0; c < sheet.titles.size(); ++c) {
        worksheet_write_string(ws, 0, lxw_col_t(c), sheet.titles.at(c).toUtf8().constData(), title);
        widths[c] = std::max(widths[c], int(sheet.titles.at(c).size()) + 2);
    }
    lxw_row_t r = sheet.titles.isEmpty() ? 0 : 1;
    for (const auto& row : sheet.rows) {
        for (int c = 0; c < row.size(); ++c) {
            const QVariant& v = row.at(c);
            const auto col = lxw_col_t(c);
            if (!v.isValid() || v.isNull())
                continue;
            if (v.typeId() == QMetaType::QDate || v.typeId() == QMetaType::QDateTime) {
                const QDateTime dt = v.typeId() == QMetaType::QDate ? v.toDate().startOfDay() : v.toDateTime();
                if (!dt.isValid())
                    continue;
                lxw_datetime d = toLxw(dt);
                worksheet_write_datetime(ws, r, col, &d, dt.time() == QTime(0, 0) ? date : dateTime);
            } else if (isNumberVariant(v)) {
                worksheet_write_number(ws, r, col, v.toDouble(), isWhole(v) ? whole : decimal);
            } else if (v.typeId() == QMetaType::Bool) {
                worksheet_write_string(ws, r, col, v.toBool() ? "Sí" : "No", nullptr);
            } else {
                QString s = v.toString();
                s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
                worksheet_write_string(ws, r, col, s.left(32767).toUtf8().constData(),
                                       s.contains(QLatin1Char('\n')) ? wrap : nullptr);
            }
            widths[c] = std::max(widths[c], displayLength(v) + 2);
        }
        ++r;
    }
    for (int c = 0; c < columns; ++c)
        worksheet_set_column(ws, lxw_col_t(c), lxw_col_t(c), std::min(widths[c], 60), nullptr);
    if (!sheet.titles.isEmpty())
        worksheet_freeze_panes(ws, 1, 0);

    const lxw_error err = workbook_close(wb);
    if (err != LXW_NO_ERROR)
        throw ReportError(QStringLiteral("No se ha podido escribir la hoja de cálculo %1 (%2)")
                              .arg(xlsxPath, QString::fromUtf8(lxw_strerror(err))));
}

QString writeTemporarySpreadsheet(const Sheet& sheet)
{
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    const QString base = QDir::tempPath() + QStringLiteral("/tejavista-") + stamp;
    QString path = base + QStringLiteral(".xlsx");
    for (int n = 2; QFileInfo::exists(path); ++n)
        path = base + QStringLiteral("-%1.xlsx").arg(n);
    writeSpreadsheet(sheet, path);
    return path;
}

void exportToSpreadsheet(const Sheet& sheet, QWidget* parent)
{
    QString path;
    try {
        path = writeTemporarySpreadsheet(sheet);
    } catch (const ReportError& e) {
        ui::dialogs().error(e.message(), parent);
        return;
    }
    if (!launchUrl(QUrl::fromLocalFile(path)))
        ui::dialogs().error(QStringLiteral("No se ha podido iniciar, debe tener instalado Microsoft Excel."), parent);
}

Sheet sheetFromModel(const QAbstractItemModel& model)
{
    // A grid fetches lazily; an export takes every row, not the first screenful.
    auto& source = const_cast<QAbstractItemModel&>(model);
    while (source.canFetchMore(QModelIndex()))
        source.fetchMore(QModelIndex());
    Sheet sheet;
    const int columns = model.columnCount();
    for (int c = 0; c < columns; ++c)
        sheet.titles.append(model.headerData(c, Qt::Horizontal, Qt::DisplayRole).toString());
    for (int r = 0; r < model.rowCount(); ++r) {
        QVector<QVariant> row;
        row.reserve(columns);
        for (int c = 0; c < columns; ++c) {
            const QModelIndex idx = model.index(r, c);
            QVariant v = model.data(idx, Qt::EditRole);
            if (!v.isValid())
                v = model.data(idx, Qt::DisplayRole);
            row.append(v);
        }
        sheet.rows.append(row);
    }
    return sheet;
}

} // namespace tv::reports
