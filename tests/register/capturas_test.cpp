// Pictures of the property register for the documentation, taken only when asked:
//   TEJAVISTA_CAPTURAS=docs xvfb-run -a build/tests/test_register --gtest_filter='Capturas*'
#include "demodata.h"
#include "frminmuebles.h"
#include "gridsettings.h"
#include "testdata.h"

#include <QCoreApplication>
#include <QDir>
#include <QPixmap>
#include <QTabWidget>
#include <QTemporaryDir>
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

TEST(Capturas, CarteraDeInmuebles)
{
    if (carpeta().isEmpty())
        GTEST_SKIP() << "TEJAVISTA_CAPTURAS names the folder for the pictures";
    QTemporaryDir ajustes;
    ui::GridSettings::setStorageFile(ajustes.filePath(QStringLiteral("rejillas.ini")));
    test::TestData data;
    DemoSize size;
    size.inmuebles = 60;
    size.inmueblesConFotos = 20;
    fillDemoAgency(data.dm(), 20261122, size);
    registro::TfrmInmuebles pantalla(data.dm());
    pantalla.resize(1280, 900);
    pantalla.dataSet()->moveTo(4);
    const char* nombres[] = {"general", "superficies", "caracteristicas", "solar", "edificio", "rustica",
                             "registro", "observaciones", "carteles", "publicacion"};
    QTabWidget* paginas = pantalla.paginas();
    for (int i = 0; i < paginas->count() && i < int(std::size(nombres)); ++i) {
        if (!paginas->isTabVisible(i))
            continue;
        paginas->setCurrentIndex(i);
        guardar(pantalla, QStringLiteral("inmuebles-%1.png").arg(QLatin1String(nombres[i])));
    }
    ui::GridSettings::setStorageFile({});
}
