#include "testdata.h"

#include "datafolder.h"

#include <QDir>
#include <QFile>
#include <QMutex>

namespace tv::test {

QString templateFolder()
{
    static QMutex lock;
    static QString folder;
    QMutexLocker guard(&lock);
    if (!folder.isEmpty())
        return folder;
    const QString preset = qEnvironmentVariable("TEJAVISTA_TEST_TEMPLATE");
    if (!preset.isEmpty() && folderHasData(preset)) {
        folder = preset;
        return folder;
    }
    static QTemporaryDir own;
    createDataFolder(own.path() + QStringLiteral("/plantilla"));
    folder = own.path() + QStringLiteral("/plantilla");
    return folder;
}

TestData::TestData(bool openConnections)
{
    const QString from = templateFolder();
    QDir(mDir.path()).mkpath(QStringLiteral("DATOS"));
    for (const QString& f : {Tdm::kDatosFile, Tdm::kImagenesFile, Tdm::kInformesFile})
        QFile::copy(from + f, mDir.path() + f);
    for (const char* sub : {"ARCHIVOS/INMUEBLES", "ARCHIVOS/CLIENTES", "ARCHIVOS/PROPIETARIOS",
                            "ARCHIVOS/PROMOCIONES"})
        QDir(mDir.path()).mkpath(QLatin1String(sub));
    QFile marker(mDir.path() + QStringLiteral("/libreria.dll"));
    if (marker.open(QIODevice::WriteOnly))
        marker.close();
    mDm = std::make_unique<Tdm>(mDir.path());
    tv::dm = mDm.get();
    if (openConnections)
        mDm->abrirConexiones();
}

TestData::~TestData()
{
    try {
        mDm->Transacion.commit();
        mDm->cerrarConexiones();
        mDm->datosrusos.close();
    } catch (...) {
    }
    if (tv::dm == mDm.get())
        tv::dm = nullptr;
    mDm.reset();
}

} // namespace tv::test
