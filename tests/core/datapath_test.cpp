#include "datapath.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace tv;

namespace {

class DataPathTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        places.rootDir = tmp.path() + QStringLiteral("/etc");
        places.installDir = tmp.path() + QStringLiteral("/config");
        places.exeDir = tmp.path() + QStringLiteral("/share");
        QDir().mkpath(places.rootDir);
        QDir().mkpath(places.exeDir);
    }
    static void write(const QString& path, const QByteArray& text)
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(text);
    }
    static QByteArray read(const QString& path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    QTemporaryDir tmp;
    DataPathPlaces places;
};

TEST_F(DataPathTest, FirstStartWritesLocalhostAndTheProgramFolder)
{
    const QString path = findDataPath(places);
    EXPECT_EQ(path, QStringLiteral("LOCALHOST:") + places.exeDir);
    EXPECT_EQ(read(places.installDir + QStringLiteral("/morvanI.sys")).trimmed(), path.toUtf8());
    EXPECT_EQ(findDataPath(places), path); // read back the second time
}

TEST_F(DataPathTest, RootFileIsCopiedOnlyWhenTheUserHasNone)
{
    write(places.rootDir + QStringLiteral("/morvanI.sys"), "servidor:/srv/tejavista\r\nsegunda linea\n");
    EXPECT_EQ(findDataPath(places), QStringLiteral("servidor:/srv/tejavista"));
    EXPECT_TRUE(QFile::exists(places.installDir + QStringLiteral("/morvanI.sys")));

    write(places.rootDir + QStringLiteral("/morvanI.sys"), "otro:/srv/otro\n");
    EXPECT_EQ(findDataPath(places), QStringLiteral("servidor:/srv/tejavista")); // never replaced
}

TEST_F(DataPathTest, MarkerForcesLocalFilesWhateverTheFileSays)
{
    const QString folder = tmp.path() + QStringLiteral("/datos");
    QDir().mkpath(folder);
    QDir().mkpath(places.installDir);
    write(places.installDir + QStringLiteral("/morvanI.sys"), ("LOCALHOST:" + folder + "\n").toUtf8());
    EXPECT_EQ(findDataPath(places), QStringLiteral("LOCALHOST:") + folder);
    write(folder + QStringLiteral("/libreria.dll"), "");
    EXPECT_EQ(findDataPath(places), folder);
    EXPECT_TRUE(isLocalDataPath(folder));
    EXPECT_FALSE(isLocalDataPath(QStringLiteral("LOCALHOST:") + folder));
}

TEST(NetworkPath, TheThreeFormsAndTheLinuxOnes)
{
    EXPECT_EQ(networkPathOf(QStringLiteral("LOCALHOST:C:\\tejavista\\datos")), QStringLiteral("C:\\tejavista\\datos"));
    EXPECT_EQ(networkPathOf(QStringLiteral("C:\\datos")), QStringLiteral("C:\\datos"));
    EXPECT_EQ(networkPathOf(QStringLiteral("\\\\LOCALHOST\\datos")), QStringLiteral("datos"));
    EXPECT_EQ(networkPathOf(QStringLiteral("\\\\SERVIDOR\\D:\\datos")), QStringLiteral("\\\\SERVIDOR\\datos"));
    EXPECT_EQ(networkPathOf(QStringLiteral("SERVIDOR:D:\\inmo\\datos")), QStringLiteral("\\\\SERVIDOR\\inmo\\datos"));
    EXPECT_EQ(networkPathOf(QStringLiteral("LOCALHOST:/srv/datos")), QStringLiteral("/srv/datos"));
    EXPECT_EQ(networkPathOf(QStringLiteral("servidor:/srv/datos")), QStringLiteral("//servidor/srv/datos"));
    EXPECT_EQ(networkPathOf(QStringLiteral("/home/ana/datos")), QStringLiteral("/home/ana/datos"));
    EXPECT_EQ(dataFolderOf(QStringLiteral("servidor/3051:/srv/datos")), QStringLiteral("/srv/datos"));
}

} // namespace
