// The desktop program settles the engine's environment before anything else:
// what it refuses ends it with the reason on stderr and exit code 1, before
// any window or attachment.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class ProgramStart : public ::testing::Test {
protected:
    void SetUp() override
    {
        mProgram = QCoreApplication::applicationDirPath() + QStringLiteral("/../shell/tejavista");
        if (!QFileInfo::exists(mProgram))
            GTEST_SKIP() << "tejavista not built next to the tests: " << mProgram.toStdString();
        mEnv = QProcessEnvironment::systemEnvironment();
        for (const char* v : {"FIREBIRD", "FIREBIRD_LOCK", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                              "TEJAVISTA_BLOQUEOS_PRIVADOS"})
            mEnv.remove(QString::fromLatin1(v));
        mEnv.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        mEnv.insert(QStringLiteral("HOME"), mDir.filePath(QStringLiteral("casa")));
        mEnv.insert(QStringLiteral("TMPDIR"), mDir.filePath(QStringLiteral("tmp")));
        QDir().mkpath(mDir.filePath(QStringLiteral("casa/.config/tejavista")));
        QDir().mkpath(mDir.filePath(QStringLiteral("tmp")));
    }

    // Exit code and stderr of the program; it must end on its own.
    std::pair<int, std::string> start()
    {
        QProcess p;
        p.setProcessEnvironment(mEnv);
        p.start(mProgram, {});
        if (!p.waitForFinished(60000)) {
            p.kill();
            p.waitForFinished();
            return {-1, "did not end"};
        }
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
                QString::fromUtf8(p.readAllStandardError()).trimmed().toStdString()};
    }

    QTemporaryDir mDir;
    QString mProgram;
    QProcessEnvironment mEnv;
};

TEST_F(ProgramStart, RefusesAPrivateFolderOthersCanWrite)
{
    const QString planted = mDir.filePath(QStringLiteral("tmp/tejavista-%1").arg(::getuid()));
    ASSERT_EQ(::mkdir(QFile::encodeName(planted).constData(), 0700), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(planted).constData(), 0770), 0);
    const auto [code, err] = start();
    EXPECT_EQ(code, 1);
    EXPECT_EQ(err, QStringLiteral("La carpeta privada del motor de datos «%1» no es segura: pertenece a otro usuario o la "
                                  "pueden escribir otros. Bórrela o corrija sus permisos.")
                       .arg(planted)
                       .toStdString());
}

// The data folder named by the user's morvanI.sys decides the lock folder
// before the program shows anything: a lock folder that cannot be one stops it.
TEST_F(ProgramStart, PreparesTheLockFolderOfItsDataFolderFirst)
{
    const QString folder = mDir.filePath(QStringLiteral("agencia"));
    QDir().mkpath(folder + QStringLiteral("/DATOS"));
    QFile marker(folder + QStringLiteral("/libreria.dll"));
    ASSERT_TRUE(marker.open(QIODevice::WriteOnly));
    marker.close();
    QFile notAFolder(folder + QStringLiteral("/DATOS/bloqueos"));
    ASSERT_TRUE(notAFolder.open(QIODevice::WriteOnly));
    notAFolder.close();
    QFile sys(mDir.filePath(QStringLiteral("casa/.config/tejavista/morvanI.sys")));
    ASSERT_TRUE(sys.open(QIODevice::WriteOnly));
    sys.write(("LOCALHOST:" + folder + "\n").toUtf8());
    sys.close();
    const auto [code, err] = start();
    EXPECT_EQ(code, 1);
    EXPECT_EQ(err, QStringLiteral("«%1/DATOS/bloqueos» tendría que ser la carpeta de bloqueos de los datos y no es una "
                                  "carpeta. Bórrelo.")
                       .arg(folder)
                       .toStdString());
}

} // namespace
