// The engine's environment across real processes: the lock table of a local
// data folder is shared by every process that opens it, whoever runs it; the
// engine's private configuration folder is refused when others could have
// planted it.
#include "dm.h"
#include "fbenvironment.h"
#include "testdata.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <grp.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace tv;

namespace {

// Failures show the texts, not their bytes.
std::string text(const QString& s)
{
    return s.toStdString();
}

const QString kCli = QStringLiteral(TEJAVISTA_CLI_PATH);

// A data folder of the program's shape, from the template, never attached here.
QString makeDataFolder(const QString& folder)
{
    QDir().mkpath(folder + QStringLiteral("/DATOS"));
    for (const QString& f : {Tdm::kDatosFile, Tdm::kImagenesFile, Tdm::kInformesFile})
        EXPECT_TRUE(QFile::copy(test::templateFolder() + f, folder + f)) << f.toStdString();
    QFile marker(folder + QStringLiteral("/libreria.dll"));
    EXPECT_TRUE(marker.open(QIODevice::WriteOnly));
    return folder;
}

// What another user's session looks like: its own home, temporary and runtime
// folders, and nothing of this test process's Firebird settings.
QProcessEnvironment userEnvironment(const QString& home, const QString& tmp, const QString& runtime = {})
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* v : {"FIREBIRD", "FIREBIRD_LOCK", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        env.remove(QString::fromLatin1(v));
    env.remove(QString::fromLatin1(kPrivateLockFolderVariable));
    QDir().mkpath(home);
    QDir().mkpath(tmp);
    env.insert(QStringLiteral("HOME"), home);
    env.insert(QStringLiteral("TMPDIR"), tmp);
    if (!runtime.isEmpty())
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
    return env;
}

// Another user's account for a child process: its uid, and one group shared
// with the other users of the data folder.
struct Account {
    uid_t uid = 0;
    gid_t group = 0;
};

void runAs(QProcess& p, const std::optional<Account>& account)
{
    if (!account)
        return;
    const Account a = *account;
    p.setChildProcessModifier([a] {
        if (::setgroups(0, nullptr) != 0 || ::setgid(a.group) != 0 || ::setuid(a.uid) != 0)
            ::_exit(127);
    });
}

struct Outcome {
    int code = -1;
    QString out;
    QString err;
};

Outcome run(const QString& program, const QStringList& args, const QProcessEnvironment& env,
            const std::optional<Account>& account = std::nullopt)
{
    QProcess p;
    p.setProcessEnvironment(env);
    runAs(p, account);
    p.start(program, args);
    Outcome r;
    if (!p.waitForFinished(120000))
        return r;
    r.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
}

Outcome cliSql(const QString& folder, const QString& sql, const QProcessEnvironment& env)
{
    return run(kCli, {QStringLiteral("sql"), QStringLiteral("--datos"), folder, sql}, env);
}

QString unsafeMessage(const QString& folder)
{
    return QStringLiteral("La carpeta privada del motor de datos «%1» no es segura: pertenece a otro usuario o la "
                          "pueden escribir otros. Bórrela o corrija sus permisos.")
        .arg(folder);
}

TEST(LockFolder, BelongsToTheDataFolderAndServersNeedNone)
{
    EXPECT_EQ(text(lockFolderFor(QStringLiteral("/srv/agencia"))), "/srv/agencia/DATOS/bloqueos");
    EXPECT_EQ(text(lockFolderFor(QStringLiteral("/srv/agencia/"))), "/srv/agencia/DATOS/bloqueos");
    EXPECT_EQ(text(lockFolderFor(QStringLiteral("/srv/./otra/../agencia"))), "/srv/agencia/DATOS/bloqueos");
    EXPECT_EQ(text(lockFolderFor(QStringLiteral("agencia"))),
              text(QDir::current().absoluteFilePath(QStringLiteral("agencia/DATOS/bloqueos"))));
    EXPECT_TRUE(lockFolderFor(QStringLiteral("servidor:/srv/agencia")).isEmpty());
    EXPECT_TRUE(lockFolderFor(QStringLiteral("LOCALHOST:/srv/agencia")).isEmpty());
}

TEST(LockFolder, TheTestRunUsesItsOwnExplicitFolderForEveryDataFolder)
{
    const QString locks = qEnvironmentVariable(kPrivateLockFolderVariable);
    ASSERT_FALSE(locks.isEmpty());
    EXPECT_TRUE(QFileInfo(locks).isDir());
    EXPECT_EQ(text(qEnvironmentVariable("FIREBIRD_LOCK")), text(locks));
    EXPECT_EQ(text(prepareFirebirdEnvironment(QStringLiteral("/otra/carpeta"))), text(locks));
    test::TestData data;
    EXPECT_FALSE(QFileInfo::exists(data.folder() + QStringLiteral("/DATOS/bloqueos")));
}

void giveTo(const QStringList& paths, const std::optional<Account>& account)
{
    if (!account)
        return;
    for (const QString& path : paths)
        ASSERT_EQ(::chown(QFile::encodeName(path).constData(), account->uid, account->group), 0) << path.toStdString();
}

// The desktop program (found through the user's morvanI.sys) and the tool, run
// by two users with different sessions and lock settings, on one local folder:
// the second writer of a row must get the lock conflict.
void expectOneLockTable(const std::optional<Account>& ana, const std::optional<Account>& luis)
{
    QTemporaryDir tmp;
    const QString folder = makeDataFolder(tmp.filePath(QStringLiteral("agencia")));
    if (ana) {
        // A folder of a group of users: DATOS and its files writable by the group.
        ASSERT_EQ(::chmod(QFile::encodeName(tmp.path()).constData(), 0755), 0);
        for (const QString& f : {Tdm::kDatosFile, Tdm::kImagenesFile, Tdm::kInformesFile, QStringLiteral("/DATOS")}) {
            const QByteArray path = QFile::encodeName(folder + f);
            ASSERT_EQ(::chown(path.constData(), 0, ana->group), 0);
            ASSERT_EQ(::chmod(path.constData(), f == QStringLiteral("/DATOS") ? 02770 : 0660), 0);
        }
    }

    const QString home1 = tmp.filePath(QStringLiteral("ana"));
    QDir().mkpath(home1 + QStringLiteral("/.config/tejavista"));
    QFile sys(home1 + QStringLiteral("/.config/tejavista/morvanI.sys"));
    ASSERT_TRUE(sys.open(QIODevice::WriteOnly));
    sys.write(("LOCALHOST:" + folder + "\n").toUtf8());
    sys.close();
    QTemporaryDir runtime1;
    QProcessEnvironment program = userEnvironment(home1, tmp.filePath(QStringLiteral("ana-tmp")), runtime1.path());
    program.insert(QStringLiteral("FIREBIRD_LOCK"), tmp.filePath(QStringLiteral("bloqueos-de-ana")));
    const QProcessEnvironment tool = userEnvironment(tmp.filePath(QStringLiteral("luis")), tmp.filePath(QStringLiteral("luis-tmp")));
    giveTo({home1, home1 + QStringLiteral("/.config"), home1 + QStringLiteral("/.config/tejavista"), sys.fileName(),
            tmp.filePath(QStringLiteral("ana-tmp")), runtime1.path()},
           ana);
    giveTo({tmp.filePath(QStringLiteral("luis")), tmp.filePath(QStringLiteral("luis-tmp"))}, luis);

    QProcess holder;
    holder.setProcessEnvironment(program);
    runAs(holder, ana);
    holder.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("--hold-as-program"), QStringLiteral("UPDATE EMPRESA SET NOMBRE = 'ANA'")});
    QString said;
    while (!said.contains(QStringLiteral("retenida"))) {
        ASSERT_TRUE(holder.waitForReadyRead(60000)) << holder.readAllStandardError().toStdString();
        said += QString::fromUtf8(holder.readAllStandardOutput());
    }

    const QStringList update = {QStringLiteral("sql"), QStringLiteral("--datos"), folder,
                                QStringLiteral("UPDATE EMPRESA SET NOMBRE = 'LUIS'")};
    const Outcome second = run(kCli, update, tool, luis);
    EXPECT_EQ(second.code, 1) << second.out.toStdString();
    EXPECT_TRUE(second.err.contains(QStringLiteral("update conflicts with concurrent update"))) << second.err.toStdString();

    holder.write("\n");
    holder.closeWriteChannel();
    ASSERT_TRUE(holder.waitForFinished(60000));
    EXPECT_EQ(holder.exitCode(), 0) << holder.readAllStandardError().toStdString();

    const Outcome after = run(kCli, {QStringLiteral("sql"), QStringLiteral("--datos"), folder,
                                     QStringLiteral("SELECT NOMBRE FROM EMPRESA")},
                              tool, luis);
    EXPECT_EQ(after.code, 0) << after.err.toStdString();
    EXPECT_EQ(text(after.out.trimmed()), "ANA");
    EXPECT_TRUE(QFileInfo(folder + QStringLiteral("/DATOS/bloqueos")).isDir());
    EXPECT_FALSE(QFileInfo::exists(tmp.filePath(QStringLiteral("bloqueos-de-ana"))));
}

TEST(LockFolder, TwoSessionsOnOneLocalFolderShareItsLockTable)
{
    expectOneLockTable(std::nullopt, std::nullopt);
}

TEST(LockFolder, TwoUsersOfOneGroupShareTheLockTableOfTheirFolder)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "running children as other users needs root";
    expectOneLockTable(Account{4201, 4242}, Account{4202, 4242});
}

TEST(LockFolder, ASecondDataFolderWithOtherLocksIsRefused)
{
    QTemporaryDir tmp;
    const QString first = makeDataFolder(tmp.filePath(QStringLiteral("primera")));
    const QString second = makeDataFolder(tmp.filePath(QStringLiteral("segunda")));
    QProcessEnvironment env = userEnvironment(tmp.filePath(QStringLiteral("casa")), tmp.filePath(QStringLiteral("tmp")));
    const QString self = QCoreApplication::applicationFilePath();

    const Outcome two = run(self, {QStringLiteral("--open-folders"), first, second}, env);
    EXPECT_EQ(two.code, 1);
    EXPECT_EQ(text(two.out), text(QStringLiteral("abierta %1\n").arg(first)));
    EXPECT_EQ(text(two.err.trimmed()), text(QStringLiteral("Este programa ya trabaja con los datos de «%1»; para abrir "
                                                         "los de «%2» ciérrelo y vuelva a abrirlo.")
                                              .arg(first, second)));

    // The same folder however it is reached has the same lock table.
    const QString link = tmp.filePath(QStringLiteral("enlace"));
    ASSERT_TRUE(QFile::link(first, link));
    const Outcome same = run(self, {QStringLiteral("--open-folders"), first, link + QStringLiteral("/../enlace/")}, env);
    EXPECT_EQ(same.code, 0) << same.err.toStdString();

    // Folders private to one process may share the lock folder it names.
    env.insert(QString::fromLatin1(kPrivateLockFolderVariable), tmp.filePath(QStringLiteral("bloqueos-privados")));
    const Outcome shared = run(self, {QStringLiteral("--open-folders"), first, second}, env);
    EXPECT_EQ(shared.code, 0) << shared.err.toStdString();
}

TEST(LockFolder, TakesTheGroupAndPermissionsOfDatos)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "giving DATOS another group needs root";
    QTemporaryDir tmp;
    const QProcessEnvironment env = userEnvironment(tmp.filePath(QStringLiteral("casa")), tmp.filePath(QStringLiteral("tmp")));
    const gid_t group = 4242;
    struct Case {
        const char* name;
        mode_t datos;
        mode_t expected;
        bool premade; // a lock folder left by an older run with the wrong mode
    };
    for (const Case& c : {Case{"grupo", 0770, 02770, false}, Case{"lectores", 0750, 02750, false},
                          Case{"todos", 0777, 02777, false}, Case{"reparada", 02775, 02775, true}}) {
        const QString folder = makeDataFolder(tmp.filePath(QLatin1String(c.name)));
        const QByteArray datos = QFile::encodeName(folder + QStringLiteral("/DATOS"));
        const QByteArray locks = datos + "/bloqueos";
        ASSERT_EQ(::chown(datos.constData(), static_cast<uid_t>(-1), group), 0);
        ASSERT_EQ(::chmod(datos.constData(), c.datos), 0);
        if (c.premade) {
            ASSERT_EQ(::mkdir(locks.constData(), 0700), 0);
        }
        QProcess p;
        p.setProcessEnvironment(env);
        // A restrictive umask must not leak into the shared folder.
        p.setChildProcessModifier([] { ::umask(077); });
        p.start(kCli, {QStringLiteral("sql"), QStringLiteral("--datos"), folder, QStringLiteral("SELECT COUNT(*) FROM EMPRESA")});
        ASSERT_TRUE(p.waitForFinished(120000));
        EXPECT_EQ(p.exitCode(), 0) << c.name << ": " << p.readAllStandardError().toStdString();
        struct stat st = {};
        ASSERT_EQ(::stat(locks.constData(), &st), 0) << c.name;
        EXPECT_TRUE(S_ISDIR(st.st_mode)) << c.name;
        EXPECT_EQ(st.st_gid, group) << c.name;
        EXPECT_EQ(text(QString::number(st.st_mode & 07777, 8)), text(QString::number(c.expected, 8))) << c.name;
    }
}

TEST(LockFolder, ANewDataFolderGetsItsLockFolderFromTheStart)
{
    QTemporaryDir tmp;
    const QProcessEnvironment env = userEnvironment(tmp.filePath(QStringLiteral("casa")), tmp.filePath(QStringLiteral("tmp")));
    const QString folder = tmp.filePath(QStringLiteral("nueva"));
    const Outcome made = run(kCli, {QStringLiteral("crear-datos"), folder}, env);
    ASSERT_EQ(made.code, 0) << made.err.toStdString();
    const QFileInfo locks(folder + QStringLiteral("/DATOS/bloqueos"));
    EXPECT_TRUE(locks.isDir());
    // The engine put its lock table there, not in a folder of the user's.
    EXPECT_FALSE(QDir(locks.filePath()).entryList({QStringLiteral("fb_*")}, QDir::Files).isEmpty());
}

TEST(LockFolder, AMissingDataFolderIsNamedNotItsLockFolder)
{
    QTemporaryDir tmp;
    const QString missing = tmp.filePath(QStringLiteral("no-existe"));
    const Outcome r = cliSql(missing, QStringLiteral("SELECT COUNT(*) FROM EMPRESA"),
                             userEnvironment(tmp.filePath(QStringLiteral("casa")), tmp.filePath(QStringLiteral("tmp"))));
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(text(r.err.trimmed()),
              text(QStringLiteral("No existe la carpeta de datos «%1» (falta su carpeta DATOS).").arg(missing)));
    EXPECT_FALSE(QFileInfo::exists(missing));
}

class PrivateFolder : public ::testing::Test {
protected:
    // The tool started on a good data folder with the given session.
    Outcome start(const QProcessEnvironment& env)
    {
        return cliSql(mFolder, QStringLiteral("SELECT COUNT(*) FROM EMPRESA"), env);
    }
    QString ownFolderIn(const QString& tmp) const
    {
        return tmp + QStringLiteral("/tejavista-%1").arg(::getuid());
    }

    QTemporaryDir mTmp;
    QString mFolder = makeDataFolder(mTmp.filePath(QStringLiteral("agencia")));
};

TEST_F(PrivateFolder, OneOthersCanWriteIsRefused)
{
    const QString tmp = mTmp.filePath(QStringLiteral("tmp-abierto"));
    const QProcessEnvironment env = userEnvironment(mTmp.filePath(QStringLiteral("casa")), tmp);
    const QString planted = ownFolderIn(tmp);
    ASSERT_TRUE(QDir().mkpath(planted));
    ASSERT_EQ(::chmod(QFile::encodeName(planted).constData(), 0777), 0);
    const Outcome r = start(env);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(text(r.err.trimmed()), text(unsafeMessage(planted)));
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_FALSE(QFileInfo::exists(planted + QStringLiteral("/firebird")));

    // Under the session's runtime folder: the group's write bit is enough to refuse.
    QTemporaryDir runtime;
    const QString inRuntime = runtime.path() + QStringLiteral("/tejavista");
    ASSERT_TRUE(QDir().mkpath(inRuntime));
    ASSERT_EQ(::chmod(QFile::encodeName(inRuntime).constData(), 0770), 0);
    const Outcome r2 = start(userEnvironment(mTmp.filePath(QStringLiteral("casa")), tmp, runtime.path()));
    EXPECT_EQ(r2.code, 1);
    EXPECT_EQ(text(r2.err.trimmed()), text(unsafeMessage(inRuntime)));

    // One of ours that others could only read (as older versions made it) is
    // closed up and used.
    ASSERT_EQ(::chmod(QFile::encodeName(inRuntime).constData(), 0755), 0);
    const Outcome r3 = start(userEnvironment(mTmp.filePath(QStringLiteral("casa")), tmp, runtime.path()));
    EXPECT_EQ(r3.code, 0) << r3.err.toStdString();
    EXPECT_EQ(QFileInfo(inRuntime).permissions() & (QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther),
              QFile::Permissions());
}

TEST_F(PrivateFolder, ALinkInItsPlaceIsRefused)
{
    const QString tmp = mTmp.filePath(QStringLiteral("tmp-enlace"));
    const QProcessEnvironment env = userEnvironment(mTmp.filePath(QStringLiteral("casa")), tmp);
    const QString target = mTmp.filePath(QStringLiteral("destino"));
    ASSERT_EQ(::mkdir(QFile::encodeName(target).constData(), 0700), 0);
    ASSERT_TRUE(QFile::link(target, ownFolderIn(tmp)));
    const Outcome r = start(env);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(text(r.err.trimmed()), text(unsafeMessage(ownFolderIn(tmp))));
}

TEST_F(PrivateFolder, OneOfAnotherUserIsRefused)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "making a folder another user's needs root";
    const QString tmp = mTmp.filePath(QStringLiteral("tmp-ajeno"));
    const QProcessEnvironment env = userEnvironment(mTmp.filePath(QStringLiteral("casa")), tmp);
    const QString planted = ownFolderIn(tmp);
    ASSERT_EQ(::mkdir(QFile::encodeName(planted).constData(), 0700), 0);
    ASSERT_EQ(::chown(QFile::encodeName(planted).constData(), 65534, 65534), 0);
    const Outcome r = start(env);
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(text(r.err.trimmed()), text(unsafeMessage(planted)));

    // The program's start refuses it the same way.
    const Outcome program = run(QCoreApplication::applicationFilePath(),
                            {QStringLiteral("--hold-as-program"), QStringLiteral("SELECT 1 FROM RDB$DATABASE")}, env);
    EXPECT_EQ(program.code, 1);
    EXPECT_EQ(text(program.err.trimmed()), text(unsafeMessage(planted)));
}

// A fresh session: the folder is made private, and Qt finds a runtime folder
// without complaining about it.
TEST_F(PrivateFolder, AFreshOneIsMadePrivateAndTheToolPrintsNoWarning)
{
    const QString tmp = mTmp.filePath(QStringLiteral("tmp-nuevo"));
    const QProcessEnvironment env = userEnvironment(mTmp.filePath(QStringLiteral("casa")), tmp);
    const Outcome r = start(env);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(text(r.out.trimmed()), "1");
    EXPECT_EQ(text(r.err), "");
    struct stat st = {};
    ASSERT_EQ(::lstat(QFile::encodeName(ownFolderIn(tmp)).constData(), &st), 0);
    EXPECT_TRUE(S_ISDIR(st.st_mode));
    EXPECT_EQ(st.st_uid, ::getuid());
    EXPECT_EQ(text(QString::number(st.st_mode & 07777, 8)), "700");
    EXPECT_TRUE(QFileInfo::exists(ownFolderIn(tmp) + QStringLiteral("/firebird/firebird.conf")));

    const Outcome cuota = run(kCli, {QStringLiteral("cuota"), QStringLiteral("3"), QStringLiteral("20"), QStringLiteral("100000")}, env);
    EXPECT_EQ(cuota.code, 0);
    EXPECT_EQ(text(cuota.err), "");
}

} // namespace
