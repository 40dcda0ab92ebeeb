// Pictures of the screens for the documentation, taken only when asked:
//   TEJAVISTA_CAPTURAS=docs build/tests/test_lookups --gtest_filter='Capturas*'
// (run under xvfb-run for the desktop's fonts and style).
#include "scripteddialogs.h"
#include "tablaauxiliar.h"
#include "testdata.h"

#include <QCoreApplication>
#include <QDir>
#include <QPixmap>
#include <gtest/gtest.h>

using namespace tv;

namespace {

QString carpeta()
{
    return qEnvironmentVariable("TEJAVISTA_CAPTURAS");
}

void guardar(QWidget& w, const QString& nombre)
{
    w.show();
    QCoreApplication::processEvents();
    const QString path = QDir(carpeta()).filePath(nombre);
    ASSERT_TRUE(w.grab().save(path)) << path.toStdString();
}

} // namespace

TEST(Capturas, TablaAuxiliar)
{
    if (carpeta().isEmpty())
        GTEST_SKIP() << "TEJAVISTA_CAPTURAS names the folder for the pictures";
    test::TestData data;
    lookups::TablaAuxiliar tipos(data.dm(), *lookups::tablaAuxiliar(QStringLiteral("TfrmTipoInmuebles")));
    tipos.resize(620, 520);
    tipos.dataSet()->moveTo(3);
    guardar(tipos, QStringLiteral("tipos-inmuebles.png"));
}
