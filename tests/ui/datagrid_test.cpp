// The record grid: following the data set both ways, editable flags, sorting
// by the database, kept column layouts, the column chooser and the export.
#include "appstate.h"
#include "datagrid.h"
#include "gridsettings.h"
#include "scripteddialogs.h"
#include "scriptedservices.h"
#include "services.h"
#include "testdata.h"

#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QSettings>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>

// Readable texts in failure messages.
static void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}

using namespace tv;
using tv::test::ScriptedDialogs;
using tv::test::ScriptedServices;
using tv::ui::Column;
using tv::ui::DataGrid;
using tv::ui::DataSetModel;
using tv::ui::GridSettings;

namespace {

struct Agent {
    int code;
    const char* name;
    const char* admin;
    const char* notes;
    int department;
};

// Inserted in code order. Plain ASCII names, so the order by name does not
// depend on the collation: Ana, Beatriz, Carlos, Marta, Ramon, Zoe.
const Agent kAgents[] = {
    {101, "Marta Ruiz", "N", "Llamar los lunes\nSegunda línea", 1},
    {102, "Ana Pons", "S", nullptr, 2},
    {103, "Zoe Vidal", "N", "Sin notas", 1},
    {104, "Carlos Gil", "S", nullptr, 2},
    {105, "Beatriz Sanz", "N", nullptr, 1},
    {12345, "Ramon Soler", "N", nullptr, 2},
};

ui::Columns agentColumns()
{
    return {
        {QStringLiteral("CODIGO"), QStringLiteral("Código"), ui::ColumnKind::Integer},
        {QStringLiteral("APEYNOM"), QStringLiteral("Nombre"), ui::ColumnKind::Text},
        {QStringLiteral("ADMINISTRADOR"), QStringLiteral("Administrador"), ui::ColumnKind::Flag},
        {QStringLiteral("FECHAALTA"), QStringLiteral("Alta"), ui::ColumnKind::Date},
        {QStringLiteral("CODDEPARTAMENTO"), QStringLiteral("Departamento"), ui::ColumnKind::Lookup,
         QStringLiteral("departamentos")},
        {QStringLiteral("OBSERVACIONES"), QStringLiteral("Observaciones"), ui::ColumnKind::Memo},
        {.column = QStringLiteral("CONTRASENA"), .caption = QStringLiteral("Contraseña"), .inGrid = false},
    };
}

class DataGridTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mSettingsDir.isValid());
        GridSettings::setStorageFile(mSettingsDir.filePath(QStringLiteral("rejillas.ini")));
        ui::appState().agentUser = QStringLiteral("ANA");
        for (const Agent& a : kAgents) {
            Query q(data.dm().datos, data.dm().Transacion,
                    QStringLiteral("INSERT INTO AGENTES (CODIGO, APEYNOM, ADMINISTRADOR, OBSERVACIONES, "
                                   "CODDEPARTAMENTO, FECHAALTA) VALUES (:C, :N, :A, :O, :D, :F)"));
            q.paramByName(QStringLiteral("C")).setAsInteger(a.code);
            q.paramByName(QStringLiteral("N")).setAsString(QString::fromUtf8(a.name));
            q.paramByName(QStringLiteral("A")).setAsString(QString::fromLatin1(a.admin));
            if (a.notes)
                q.paramByName(QStringLiteral("O")).setAsString(QString::fromUtf8(a.notes));
            q.paramByName(QStringLiteral("D")).setAsInteger(a.department);
            q.paramByName(QStringLiteral("F")).setAsDate(QDate(2026, 3, a.code % 28 + 1));
            q.exec();
        }
        ds = std::make_unique<DataSet>(data.dm().datos, data.dm().Transacion);
        ds->setSelectSQL(QStringLiteral("SELECT * FROM AGENTES ORDER BY CODIGO"));
        ds->setKeyFields({QStringLiteral("CODIGO")});
        ds->open();
    }

    void TearDown() override
    {
        if (ds && ds->isEditing())
            ds->cancel();
        if (ds && ds->updatesPending())
            ds->cancelUpdates();
        ds.reset();
        GridSettings::setStorageFile({});
        ui::appState().reset();
    }

    std::unique_ptr<DataGrid> makeGrid(const QString& screen = QStringLiteral("agentes"))
    {
        auto grid = std::make_unique<DataGrid>(ds.get(), agentColumns(), screen);
        grid->resize(900, 300);
        return grid;
    }

    static void show(DataGrid& grid)
    {
        grid.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&grid));
    }

    static void clickRow(DataGrid& grid, int row, int column = 1)
    {
        const QRect r = grid.visualRect(grid.model()->index(row, column));
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, r.center());
    }

    static void clickHeader(DataGrid& grid, int column)
    {
        QHeaderView* h = grid.horizontalHeader();
        const QPoint p(h->sectionViewportPosition(column) + h->sectionSize(column) / 2, h->height() / 2);
        QTest::mouseClick(h->viewport(), Qt::LeftButton, {}, p);
    }

    QString name() { return ds->fieldByName(QStringLiteral("APEYNOM")).asString(); }
    QString admin() { return ds->fieldByName(QStringLiteral("ADMINISTRADOR")).asString(); }

    static QAction* actionNamed(QMenu& menu, const QString& text)
    {
        for (QAction* a : menu.actions())
            if (a->text() == text)
                return a;
        return nullptr;
    }

    test::TestData data;
    QTemporaryDir mSettingsDir;
    std::unique_ptr<DataSet> ds;
};

} // namespace

TEST_F(DataGridTest, ShowsTheGridColumnsWithTheirCaptionsAndFormats)
{
    auto grid = makeGrid();
    const QAbstractItemModel& m = *grid->model();
    ASSERT_EQ(m.columnCount(), 6) << "a column that is not inGrid stays out";
    EXPECT_EQ(m.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Código"));
    EXPECT_EQ(m.headerData(5, Qt::Horizontal).toString(), QStringLiteral("Observaciones"));
    EXPECT_EQ(grid->columnOf(QStringLiteral("CONTRASENA")), -1);

    EXPECT_EQ(m.data(m.index(5, 0)).toString(), QStringLiteral("12345")) << "codes are not grouped by thousands";
    EXPECT_EQ(m.data(m.index(0, 3)).toString(), QStringLiteral("18/03/2026"));
    // A flag is a check box, no text, in the middle of its cell.
    EXPECT_EQ(m.data(m.index(1, 2)).toString(), QString());
    EXPECT_EQ(m.data(m.index(1, 2), Qt::CheckStateRole).toInt(), int(Qt::Checked));
    EXPECT_EQ(m.data(m.index(0, 2), Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    EXPECT_EQ(m.data(m.index(0, 2), Qt::TextAlignmentRole).value<Qt::Alignment>(), Qt::Alignment(Qt::AlignCenter));
    // A memo shows its first line, the rest on hovering.
    EXPECT_EQ(m.data(m.index(0, 5)).toString(), QStringLiteral("Llamar los lunes …"));
    EXPECT_EQ(m.data(m.index(0, 5), Qt::ToolTipRole).toString(), QStringLiteral("Llamar los lunes\nSegunda línea"));
    EXPECT_EQ(m.data(m.index(2, 5)).toString(), QStringLiteral("Sin notas"));
    // A lookup shows its code until a catalogue describes it.
    EXPECT_EQ(m.data(m.index(0, 4)).toString(), QStringLiteral("1"));
    QStringList asked;
    grid->setDescriber([&](const QString& lookup, const QVariant& code) {
        asked.append(lookup);
        return code.toInt() == 1 ? QStringLiteral("Ventas") : QString();
    });
    EXPECT_EQ(m.data(m.index(0, 4)).toString(), QStringLiteral("Ventas"));
    EXPECT_EQ(m.data(m.index(1, 4)).toString(), QStringLiteral("2")) << "no description: the code";
    EXPECT_TRUE(asked.contains(QStringLiteral("departamentos")));
    EXPECT_EQ(m.data(m.index(0, 4), DataSetModel::ValueRole).toInt(), 1);
}

TEST_F(DataGridTest, TheGridFollowsTheDataSet)
{
    auto grid = makeGrid();
    EXPECT_EQ(grid->currentIndex().row(), 0);
    ds->moveTo(3);
    EXPECT_EQ(grid->currentIndex().row(), 3);
    EXPECT_TRUE(grid->selectionModel()->isRowSelected(3, {}));
    EXPECT_FALSE(grid->selectionModel()->isRowSelected(0, {}));
    ds->next();
    EXPECT_EQ(grid->currentIndex().row(), 4);
    ds->first();
    EXPECT_EQ(grid->currentIndex().row(), 0);
}

TEST_F(DataGridTest, TheDataSetFollowsTheGrid)
{
    auto grid = makeGrid();
    show(*grid);
    clickRow(*grid, 2);
    EXPECT_EQ(ds->recNo(), 2);
    EXPECT_EQ(name(), QStringLiteral("Zoe Vidal"));
    QTest::keyClick(grid.get(), Qt::Key_Down);
    EXPECT_EQ(ds->recNo(), 3);
    grid->setCurrentIndex(grid->model()->index(1, 0));
    EXPECT_EQ(ds->recNo(), 1);
    EXPECT_TRUE(grid->selectionModel()->isRowSelected(1, {}));
}

TEST_F(DataGridTest, TheGridDoesNotLeaveARecordInEdit)
{
    ScriptedDialogs dialogs;
    auto grid = makeGrid();
    show(*grid);
    ds->moveTo(1);
    ds->edit();
    ds->fieldByName(QStringLiteral("APEYNOM")).setAsString(QStringLiteral("Ana Pons Mas"));

    clickRow(*grid, 3);
    QTest::keyClick(grid.get(), Qt::Key_Down);
    grid->setCurrentIndex(grid->model()->index(4, 0));

    EXPECT_EQ(dialogs.texts(), QStringList(3, PendingChangesError::kText));
    EXPECT_EQ(ds->recNo(), 1);
    EXPECT_EQ(ds->state(), DataSet::State::Edit) << "never posted behind the user";
    EXPECT_FALSE(ds->updatesPending());
    EXPECT_EQ(name(), QStringLiteral("Ana Pons Mas"));
    EXPECT_EQ(grid->currentIndex().row(), 1);
    const QModelIndexList selected = grid->selectionModel()->selectedRows();
    ASSERT_EQ(selected.size(), 1);
    EXPECT_EQ(selected.first().row(), 1);

    dialogs.clear();
    ds->post();
    clickRow(*grid, 3);
    EXPECT_EQ(ds->recNo(), 3) << "a posted change does not hold the grid";
    EXPECT_TRUE(dialogs.log().isEmpty());
}

TEST_F(DataGridTest, AScrollHookThatRefusesKeepsTheRow)
{
    auto grid = makeGrid();
    show(*grid);
    ds->beforeScroll += [](DataSet&) { throw Abort(); };
    clickRow(*grid, 4);
    EXPECT_EQ(ds->recNo(), 0);
    EXPECT_EQ(grid->currentIndex().row(), 0);
    EXPECT_EQ(grid->selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(grid->selectionModel()->selectedRows().first().row(), 0);
}

TEST_F(DataGridTest, AnEditableFlagTogglesAndLeavesTheRecordInEdit)
{
    auto grid = makeGrid();
    show(*grid);
    const int flag = grid->columnOf(QStringLiteral("ADMINISTRADOR"));
    ds->moveTo(0);
    QTest::keyClick(grid.get(), Qt::Key_Space);
    EXPECT_EQ(ds->state(), DataSet::State::Browse) << "read-only flags do not change";
    EXPECT_FALSE(grid->model()->flags(grid->model()->index(0, flag)) & Qt::ItemIsUserCheckable);

    grid->setEditableFlags(true);
    EXPECT_TRUE(grid->model()->flags(grid->model()->index(0, flag)) & Qt::ItemIsUserCheckable);
    QTest::keyClick(grid.get(), Qt::Key_Space);
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    EXPECT_EQ(admin(), QStringLiteral("S"));
    EXPECT_EQ(grid->model()->data(grid->model()->index(0, flag), Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QTest::keyClick(grid.get(), Qt::Key_Space);
    EXPECT_EQ(admin(), QStringLiteral("N"));
    EXPECT_EQ(ds->state(), DataSet::State::Edit);

    // A click on the box in the middle of the cell toggles it too.
    const QRect cell = grid->visualRect(grid->model()->index(0, flag));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_EQ(admin(), QStringLiteral("S"));
    EXPECT_FALSE(ds->updatesPending()) << "the screen saves; the grid never posts";

    ds->cancel();
    EXPECT_EQ(admin(), QStringLiteral("N"));
}

TEST_F(DataGridTest, AFlagOnAnotherRowIsNotToggledFromHere)
{
    auto grid = makeGrid();
    grid->setFlagEditable(QStringLiteral("ADMINISTRADOR"), true);
    const int flag = grid->columnOf(QStringLiteral("ADMINISTRADOR"));
    EXPECT_FALSE(grid->toggleFlag(grid->model()->index(3, flag)));
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    EXPECT_EQ(ds->recNo(), 0);
    EXPECT_FALSE(grid->toggleFlag(grid->model()->index(0, grid->columnOf(QStringLiteral("APEYNOM")))));
    EXPECT_TRUE(grid->toggleFlag(grid->model()->index(0, flag)));
    EXPECT_EQ(admin(), QStringLiteral("S"));
}

TEST_F(DataGridTest, ARefusingBeforeEditLeavesTheFlagAsItWas)
{
    auto grid = makeGrid();
    show(*grid);
    grid->setEditableFlags(true);
    int asked = 0;
    ds->beforeEdit += [&](DataSet&) {
        ++asked;
        throw Abort();
    };
    ds->moveTo(1);
    QTest::keyClick(grid.get(), Qt::Key_Space);
    const int flag = grid->columnOf(QStringLiteral("ADMINISTRADOR"));
    EXPECT_FALSE(grid->toggleFlag(grid->model()->index(1, flag)));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    EXPECT_EQ(admin(), QStringLiteral("S"));
    EXPECT_EQ(grid->model()->data(grid->model()->index(1, flag), Qt::CheckStateRole).toInt(), int(Qt::Checked));
}

TEST_F(DataGridTest, AFieldHookThatRefusesTakesTheEditBack)
{
    auto grid = makeGrid();
    grid->setEditableFlags(true);
    ds->setOnChange(QStringLiteral("ADMINISTRADOR"), [](DataSetField) { throw Abort(); });
    EXPECT_FALSE(grid->toggleFlag(grid->model()->index(0, grid->columnOf(QStringLiteral("ADMINISTRADOR")))));
    EXPECT_EQ(ds->state(), DataSet::State::Browse);
    EXPECT_EQ(admin(), QStringLiteral("N"));
}

TEST_F(DataGridTest, AHeaderClickSortsByTheDatabaseAndKeepsTheRecord)
{
    auto grid = makeGrid();
    show(*grid);
    ds->moveTo(2); // Zoe Vidal
    const int nameColumn = grid->columnOf(QStringLiteral("APEYNOM"));

    clickHeader(*grid, nameColumn);
    EXPECT_EQ(grid->sortColumn(), nameColumn);
    EXPECT_EQ(grid->sortOrder(), Qt::AscendingOrder);
    EXPECT_EQ(grid->horizontalHeader()->sortIndicatorSection(), nameColumn);
    EXPECT_TRUE(ds->selectSQL().contains(QStringLiteral("ORDER BY APEYNOM, CODIGO"))) << ds->selectSQL().toStdString();
    EXPECT_EQ(ds->value(0, ds->fieldIndex(QStringLiteral("APEYNOM"))).toString(), QStringLiteral("Ana Pons"));
    EXPECT_EQ(grid->model()->data(grid->model()->index(0, nameColumn)).toString(), QStringLiteral("Ana Pons"));
    EXPECT_EQ(name(), QStringLiteral("Zoe Vidal")) << "the same record stays current";
    EXPECT_EQ(ds->recNo(), 5);
    EXPECT_EQ(grid->currentIndex().row(), 5);

    clickHeader(*grid, nameColumn);
    EXPECT_EQ(grid->sortOrder(), Qt::DescendingOrder);
    EXPECT_EQ(grid->horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_EQ(grid->model()->data(grid->model()->index(0, nameColumn)).toString(), QStringLiteral("Zoe Vidal"));
    EXPECT_EQ(ds->recNo(), 0);

    clickHeader(*grid, grid->columnOf(QStringLiteral("CODIGO")));
    EXPECT_EQ(grid->model()->data(grid->model()->index(0, nameColumn)).toString(), QStringLiteral("Marta Ruiz"));
}

TEST_F(DataGridTest, SortingIsRefusedWhileChangesArePending)
{
    ScriptedDialogs dialogs;
    auto grid = makeGrid();
    show(*grid);
    const QString before = ds->selectSQL();
    ds->moveTo(2);
    ds->edit();
    ds->fieldByName(QStringLiteral("APEYNOM")).setAsString(QStringLiteral("Zoe Vidal Roig"));

    clickHeader(*grid, grid->columnOf(QStringLiteral("APEYNOM")));
    EXPECT_EQ(dialogs.texts(), QStringList{QStringLiteral("Hay cambios sin grabar. Grábelos o cancélelos antes de continuar.")});
    EXPECT_EQ(ds->selectSQL(), before);
    EXPECT_EQ(ds->state(), DataSet::State::Edit);
    EXPECT_EQ(ds->recNo(), 2);
    EXPECT_EQ(name(), QStringLiteral("Zoe Vidal Roig"));
    EXPECT_EQ(grid->sortColumn(), 0) << "the select's own order is shown";
    EXPECT_EQ(grid->horizontalHeader()->sortIndicatorSection(), 0) << "the arrow did not move";

    // Posted but not saved: still pending, still refused.
    ds->post();
    dialogs.clear();
    EXPECT_FALSE(grid->sortBy(grid->columnOf(QStringLiteral("APEYNOM")), Qt::DescendingOrder));
    EXPECT_EQ(dialogs.texts(), QStringList{PendingChangesError::kText});
    EXPECT_EQ(ds->selectSQL(), before);
    EXPECT_TRUE(ds->updatesPending());
}

TEST_F(DataGridTest, MemosAreNotSortable)
{
    auto grid = makeGrid();
    const QString before = ds->selectSQL();
    EXPECT_FALSE(grid->isSortable(grid->columnOf(QStringLiteral("OBSERVACIONES"))));
    EXPECT_FALSE(grid->sortBy(grid->columnOf(QStringLiteral("OBSERVACIONES")), Qt::AscendingOrder));
    EXPECT_EQ(ds->selectSQL(), before);
}

TEST_F(DataGridTest, WidthsAndHiddenColumnsAreKeptPerScreenAndUser)
{
    const int nameColumn = 1;
    const int dateColumn = 3;
    int defaultWidth = 0;
    {
        auto grid = makeGrid();
        defaultWidth = grid->columnWidth(nameColumn);
        grid->horizontalHeader()->resizeSection(nameColumn, defaultWidth + 77);
        EXPECT_TRUE(grid->setColumnVisible(dateColumn, false));
    }
    {
        auto again = makeGrid();
        EXPECT_EQ(again->columnWidth(nameColumn), defaultWidth + 77);
        EXPECT_TRUE(again->isColumnHidden(dateColumn));
        EXPECT_FALSE(again->isColumnHidden(nameColumn));
    }
    {
        auto otherScreen = makeGrid(QStringLiteral("agentes-consulta"));
        EXPECT_EQ(otherScreen->columnWidth(nameColumn), defaultWidth);
        EXPECT_FALSE(otherScreen->isColumnHidden(dateColumn));
    }
    ui::appState().agentUser = QStringLiteral("LUIS");
    {
        auto otherUser = makeGrid();
        EXPECT_EQ(otherUser->columnWidth(nameColumn), defaultWidth);
        EXPECT_FALSE(otherUser->isColumnHidden(dateColumn));
    }
    QSettings kept(GridSettings::storageFile(), QSettings::IniFormat);
    EXPECT_EQ(kept.value(QStringLiteral("rejillas/agentes/ANA/APEYNOM/ancho")).toInt(), defaultWidth + 77);
    EXPECT_TRUE(kept.value(QStringLiteral("rejillas/agentes/ANA/FECHAALTA/oculta")).toBool());
}

TEST_F(DataGridTest, SortingKeepsTheLayout)
{
    auto grid = makeGrid();
    grid->horizontalHeader()->resizeSection(1, 250);
    grid->setColumnVisible(3, false);
    ASSERT_TRUE(grid->sortBy(1, Qt::DescendingOrder));
    EXPECT_EQ(grid->columnWidth(1), 250);
    EXPECT_TRUE(grid->isColumnHidden(3));
}

TEST_F(DataGridTest, TheColumnChooserShowsAndHidesColumns)
{
    auto grid = makeGrid();
    std::unique_ptr<QMenu> menu(grid->createHeaderMenu());
    QStringList checkable;
    for (QAction* a : menu->actions())
        if (a->isCheckable()) {
            checkable.append(a->text());
            EXPECT_TRUE(a->isChecked()) << a->text().toStdString();
        }
    EXPECT_EQ(checkable, QStringList({QStringLiteral("Código"), QStringLiteral("Nombre"),
                                      QStringLiteral("Administrador"), QStringLiteral("Alta"),
                                      QStringLiteral("Departamento"), QStringLiteral("Observaciones")}));
    ASSERT_NE(actionNamed(*menu, QStringLiteral("Ajustar anchos")), nullptr);
    ASSERT_NE(actionNamed(*menu, QStringLiteral("Exportar a Excel…")), nullptr);

    actionNamed(*menu, QStringLiteral("Alta"))->setChecked(false);
    EXPECT_TRUE(grid->isColumnHidden(3));
    actionNamed(*menu, QStringLiteral("Alta"))->setChecked(true);
    EXPECT_FALSE(grid->isColumnHidden(3));

    // Down to one column: that one cannot go.
    for (int c = 1; c < 6; ++c)
        ASSERT_TRUE(grid->setColumnVisible(c, false));
    EXPECT_FALSE(grid->setColumnVisible(0, false));
    EXPECT_FALSE(grid->isColumnHidden(0));
    menu.reset(grid->createHeaderMenu());
    EXPECT_FALSE(actionNamed(*menu, QStringLiteral("Código"))->isEnabled());
    EXPECT_TRUE(actionNamed(*menu, QStringLiteral("Nombre"))->isEnabled());
    EXPECT_FALSE(actionNamed(*menu, QStringLiteral("Nombre"))->isChecked());
}

TEST_F(DataGridTest, FittingWidthsFollowsTheContentsAndIsKept)
{
    auto grid = makeGrid();
    show(*grid);
    grid->horizontalHeader()->resizeSection(1, 30);
    std::unique_ptr<QMenu> menu(grid->createHeaderMenu());
    actionNamed(*menu, QStringLiteral("Ajustar anchos"))->trigger();
    const int fitted = grid->columnWidth(1);
    EXPECT_GE(fitted, grid->fontMetrics().horizontalAdvance(QStringLiteral("Beatriz Sanz")));
    auto again = makeGrid();
    EXPECT_EQ(again->columnWidth(1), fitted);
}

TEST_F(DataGridTest, ExportSendsTheVisibleColumnsAndEveryRow)
{
    ScriptedServices services;
    auto grid = makeGrid();
    grid->setSheetName(QStringLiteral("Agentes"));
    grid->setDescriber([](const QString&, const QVariant& code) {
        return code.toInt() == 1 ? QStringLiteral("Ventas") : QStringLiteral("Alquileres");
    });
    grid->setColumnVisible(3, false);
    std::unique_ptr<QMenu> menu(grid->createContextMenu());
    ASSERT_NE(actionNamed(*menu, QStringLiteral("Exportar a Excel…")), nullptr);
    actionNamed(*menu, QStringLiteral("Exportar a Excel…"))->trigger();

    ASSERT_EQ(services.calls().size(), 1);
    const ScriptedServices::Call& c = services.calls().first();
    EXPECT_EQ(c.kind, ScriptedServices::Kind::ExportGrid);
    EXPECT_EQ(c.name, QStringLiteral("Agentes"));
    EXPECT_EQ(c.headers, QStringList({QStringLiteral("Código"), QStringLiteral("Nombre"),
                                      QStringLiteral("Administrador"), QStringLiteral("Departamento"),
                                      QStringLiteral("Observaciones")}));
    ASSERT_EQ(c.rows(), 6);
    EXPECT_EQ(c.texts.at(0).at(1), QStringLiteral("Marta Ruiz"));
    EXPECT_EQ(c.values.at(0).at(2).toString(), QStringLiteral("N"));
    EXPECT_EQ(c.values.at(1).at(2).toString(), QStringLiteral("S"));
    EXPECT_EQ(c.values.at(0).at(3).toString(), QStringLiteral("Ventas")) << "a lookup exports its description";
    EXPECT_EQ(c.values.at(0).at(4).toString(), QStringLiteral("Llamar los lunes\nSegunda línea"))
        << "a memo exports all its text";
    EXPECT_EQ(c.values.at(5).at(0).toInt(), 12345);

    // The header menu offers the same.
    menu.reset(grid->createHeaderMenu());
    actionNamed(*menu, QStringLiteral("Exportar a Excel…"))->trigger();
    ASSERT_EQ(services.calls().size(), 2);
    EXPECT_EQ(services.calls().at(1).kind, ScriptedServices::Kind::ExportGrid);
}

TEST_F(DataGridTest, TheSheetIsNamedAfterTheWindow)
{
    QWidget window;
    window.setWindowTitle(QStringLiteral("Agentes"));
    DataGrid grid(ds.get(), agentColumns(), QStringLiteral("agentes"), &window);
    EXPECT_EQ(grid.sheetName(), QStringLiteral("Agentes"));
}

// The towns: 8,000 rows read by key, a page at a time.
TEST(DataGridLargeList, OpensAndSortsWithoutReadingEverything)
{
    test::TestData data;
    QTemporaryDir dir;
    GridSettings::setStorageFile(dir.filePath(QStringLiteral("rejillas.ini")));
    DataSet ds(data.dm().datos, data.dm().Transacion);
    ds.setSelectSQL(QStringLiteral("SELECT * FROM MUNICIPIOS ORDER BY ID"));
    ds.open();
    const int total = Query::scalar(data.dm().datos, data.dm().Transacion,
                                    QStringLiteral("SELECT COUNT(*) FROM MUNICIPIOS")).toInt();
    ASSERT_GT(total, 5000);
    const QString last = Query::scalar(data.dm().datos, data.dm().Transacion,
                                       QStringLiteral("SELECT MAX(DESMUNIINE) FROM MUNICIPIOS")).toString().trimmed();
    {
        DataGrid grid(&ds, {{QStringLiteral("DESMUNIINE"), QStringLiteral("Municipio")},
                            {QStringLiteral("DESPROVINCIA"), QStringLiteral("Provincia")}},
                      QStringLiteral("municipios"));
        grid.resize(600, 400);
        grid.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&grid));
        EXPECT_LT(ds.recordCount(), 1000) << "opening reads what shows";
        // The last town by name is found by the database, and stays current.
        ASSERT_TRUE(ds.locate(QStringLiteral("DESMUNIINE"), last));
        const QVariant id = ds.fieldByName(QStringLiteral("ID")).value();
        ASSERT_TRUE(grid.sortBy(0, Qt::DescendingOrder));
        QCoreApplication::processEvents();
        EXPECT_EQ(grid.model()->data(grid.model()->index(0, 0)).toString(), last);
        EXPECT_EQ(ds.fieldByName(QStringLiteral("ID")).value(), id);
        EXPECT_EQ(ds.recNo(), 0);
        EXPECT_EQ(grid.currentIndex().row(), 0);
        EXPECT_LT(ds.recordCount(), 1000) << "sorting reopens; it does not read the list";
        EXPECT_TRUE(ds.readsByKey());
    }
    GridSettings::setStorageFile({});
}

TEST(DataGridSql, TheOrderingIsReplacedOrAdded)
{
    using ui::selectOrderedBy;
    EXPECT_EQ(selectOrderedBy(QStringLiteral("SELECT * FROM AGENTES ORDER BY CODIGO"), QStringLiteral("APEYNOM DESC")),
              QStringLiteral("SELECT * FROM AGENTES ORDER BY APEYNOM DESC"));
    EXPECT_EQ(selectOrderedBy(QStringLiteral("select * from agentes where apeynom <> 'x order by y'"),
                              QStringLiteral("CODIGO")),
              QStringLiteral("select * from agentes where apeynom <> 'x order by y' ORDER BY CODIGO"));
    EXPECT_EQ(selectOrderedBy(QStringLiteral("SELECT A.* FROM AGENTES A WHERE A.CODIGO IN (SELECT FIRST 1 CODIGO "
                                             "FROM AGENTES ORDER BY CODIGO) ORDER BY A.APEYNOM ROWS 10;"),
                              QStringLiteral("A.CODIGO DESC")),
              QStringLiteral("SELECT A.* FROM AGENTES A WHERE A.CODIGO IN (SELECT FIRST 1 CODIGO FROM AGENTES ORDER "
                             "BY CODIGO) ORDER BY A.CODIGO DESC ROWS 10"));
    EXPECT_EQ(selectOrderedBy(QStringLiteral("SELECT CODIGO FROM AGENTES -- order by nothing\nFOR UPDATE"),
                              QStringLiteral("1")),
              QStringLiteral("SELECT CODIGO FROM AGENTES -- order by nothing\n ORDER BY 1 FOR UPDATE"));
    EXPECT_EQ(selectOrderedBy(QStringLiteral("SELECT * FROM AGENTES -- todos"), QStringLiteral("CODIGO")),
              QStringLiteral("SELECT * FROM AGENTES -- todos\n ORDER BY CODIGO"));
    EXPECT_EQ(selectOrderedBy(QStringLiteral("SELECT 1 FROM A UNION SELECT 2 FROM B ORDER BY 1"),
                              QStringLiteral("1 DESC")),
              QStringLiteral("SELECT 1 FROM A UNION SELECT 2 FROM B ORDER BY 1 DESC"));
}

TEST_F(DataGridTest, AJoinIsSortedByPosition)
{
    ds->close();
    ds->setSelectSQL(QStringLiteral("SELECT A.CODIGO, A.APEYNOM, A.ADMINISTRADOR, A.FECHAALTA, A.CODDEPARTAMENTO, "
                                    "A.OBSERVACIONES, D.DESCRIPCION FROM AGENTES A LEFT JOIN DEPARTAMENTOS D ON "
                                    "D.CODIGO = A.CODDEPARTAMENTO"));
    ds->open();
    auto grid = makeGrid();
    EXPECT_EQ(grid->sortColumn(), -1);
    ASSERT_TRUE(grid->sortBy(1, Qt::AscendingOrder));
    EXPECT_TRUE(ds->selectSQL().endsWith(QStringLiteral("ORDER BY 2"))) << ds->selectSQL().toStdString();
    EXPECT_EQ(ds->value(0, 1).toString(), QStringLiteral("Ana Pons"));
    EXPECT_EQ(grid->sortColumn(), 1);
}

TEST(DataGridServices, ThePlainServiceSaysPrintingIsNotAvailable)
{
    ScriptedDialogs dialogs;
    ui::Services* installed = &ui::services();
    ui::Services::install(nullptr); // the plain one, under the tests' failing one
    ui::Services& plain = ui::services();
    ASSERT_EQ(dynamic_cast<ScriptedServices*>(&plain), nullptr);
    QStandardItemModel model(1, 1);
    plain.exportGrid(model, QStringLiteral("Hoja"));
    EXPECT_FALSE(plain.print(QStringLiteral("in_financiacion"), {}));
    plain.preview(QStringLiteral("in_financiacion"), {});
    const QList<ScriptedDialogs::Entry> log = dialogs.log();
    ASSERT_EQ(log.size(), 3);
    for (const ScriptedDialogs::Entry& e : log)
        EXPECT_EQ(e.kind, ScriptedDialogs::Kind::Error);
    EXPECT_EQ(log.at(0).text,
              QStringLiteral("La exportación a Excel no está disponible: el servicio de informes no está instalado."));
    EXPECT_EQ(log.at(1).text,
              QStringLiteral("La impresión no está disponible: el servicio de informes no está instalado."));
    EXPECT_EQ(log.at(2).text, log.at(1).text);
    ui::Services::install(installed);
}

TEST(DataGridServices, ScriptedServicesAnswerAndRestore)
{
    ui::Services* before = &ui::services();
    {
        ScriptedServices services;
        EXPECT_EQ(&ui::services(), &services);
        services.fileAnswer(QStringLiteral("/tmp/a.xlsx"));
        services.fileAnswer(QString());
        services.printAnswer(false);
        EXPECT_EQ(ui::services().chooseSaveFile(QStringLiteral("Guardar"), QStringLiteral("a.xlsx"),
                                                QStringLiteral("Excel (*.xlsx)")),
                  QStringLiteral("/tmp/a.xlsx"));
        EXPECT_EQ(ui::services().chooseFolder(QStringLiteral("Carpeta"), QStringLiteral("/tmp")), QString());
        EXPECT_FALSE(ui::services().print(QStringLiteral("in_x"), {{QStringLiteral("k"), 1}}));
        ASSERT_EQ(services.calls().size(), 3);
        EXPECT_EQ(services.calls().at(0).kind, ScriptedServices::Kind::SaveFile);
        EXPECT_EQ(services.calls().at(0).detail, QStringLiteral("a.xlsx|Excel (*.xlsx)"));
        EXPECT_EQ(services.calls().at(1).kind, ScriptedServices::Kind::Folder);
        EXPECT_EQ(services.calls().at(2).data.value(QStringLiteral("k")).toInt(), 1);
    }
    EXPECT_EQ(&ui::services(), before);
}
