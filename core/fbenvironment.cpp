#include "fbenvironment.h"

#include "datapath.h"
#include "fbapi.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tv {

namespace {

const char* const kSystemRoot = "/usr/lib/x86_64-linux-gnu/firebird/3.0";

QString systemRoot()
{
    if (QFileInfo::exists(QString::fromLatin1(kSystemRoot)))
        return QString::fromLatin1(kSystemRoot);
    // Other architectures keep the same layout under their own triplet.
    const QStringList candidates = QDir(QStringLiteral("/usr/lib")).entryList({QStringLiteral("*-linux-gnu*")}, QDir::Dirs);
    for (const QString& c : candidates) {
        const QString p = QStringLiteral("/usr/lib/%1/firebird/3.0").arg(c);
        if (QFileInfo::exists(p))
            return p;
    }
    return QString::fromLatin1(kSystemRoot);
}

void linkIfMissing(const QString& target, const QString& link)
{
    if (!QFileInfo(link).exists() && !QFileInfo(link).isSymLink())
        QFile::link(target, link);
}

void copyIfMissing(const QString& from, const QString& to)
{
    if (!QFileInfo::exists(to))
        QFile::copy(QFileInfo(from).canonicalFilePath(), to);
}

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

// Another local user could have made the folder first (a predictable name in
// a shared temporary folder) and would then control the engine's plugins.
void ensurePrivateFolder(const QString& folder)
{
    const QByteArray path = QFile::encodeName(folder);
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        throw FirebirdEnvironmentError(
            QStringLiteral("No se puede crear la carpeta privada del motor de datos «%1»: %2.").arg(folder, systemError()));
    struct stat st = {};
    if (::lstat(path.constData(), &st) != 0)
        throw FirebirdEnvironmentError(
            QStringLiteral("No se puede crear la carpeta privada del motor de datos «%1»: %2.").arg(folder, systemError()));
    // Nobody else can have written into one of ours that only they could
    // read (an older version made it 0755): that one is just closed up.
    if (!S_ISDIR(st.st_mode) || st.st_uid != ::getuid() || (st.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        throw FirebirdEnvironmentError(
            QStringLiteral("La carpeta privada del motor de datos «%1» no es segura: pertenece a otro usuario o la "
                           "pueden escribir otros. Bórrela o corrija sus permisos.")
                .arg(folder));
    if ((st.st_mode & 07777) != S_IRWXU)
        ::chmod(path.constData(), S_IRWXU);
}

void writeRoot(const QString& root)
{
    const QString sys = systemRoot();
    QDir().mkpath(root + QStringLiteral("/intl"));
    const QString conf = root + QStringLiteral("/firebird.conf");
    const QByteArray wanted = "# Written by tejavista: lets the program and its command-line tool\n"
                              "# share local database files.\n"
                              "ServerMode = SuperClassic\n";
    QFile f(conf);
    if (!f.open(QIODevice::ReadOnly) || f.readAll() != wanted) {
        f.close();
        QFile w(conf);
        if (w.open(QIODevice::WriteOnly | QIODevice::Truncate))
            w.write(wanted);
    }
    linkIfMissing(sys + QStringLiteral("/plugins"), root + QStringLiteral("/plugins"));
    linkIfMissing(sys + QStringLiteral("/lib"), root + QStringLiteral("/lib"));
    linkIfMissing(sys + QStringLiteral("/firebird.msg"), root + QStringLiteral("/firebird.msg"));
    linkIfMissing(sys + QStringLiteral("/plugins.conf"), root + QStringLiteral("/plugins.conf"));
    linkIfMissing(sys + QStringLiteral("/databases.conf"), root + QStringLiteral("/databases.conf"));
    // A symlinked intl folder makes the engine miss every non-builtin charset.
    copyIfMissing(sys + QStringLiteral("/intl/libfbintl.so"), root + QStringLiteral("/intl/libfbintl.so"));
    copyIfMissing(sys + QStringLiteral("/intl/fbintl.conf"), root + QStringLiteral("/intl/fbintl.conf"));
}

// Everyone who may write DATOS must be able to use the lock table, and no one
// else: the folder copies DATOS's group and its group and other bits.
void ensureLockFolder(const QString& lock)
{
    const QString datos = QFileInfo(lock).absolutePath();
    struct stat ds = {};
    // Said here: the engine would only complain about its lock folder.
    if (::stat(QFile::encodeName(datos).constData(), &ds) != 0 || !S_ISDIR(ds.st_mode))
        throw FirebirdEnvironmentError(QStringLiteral("No existe la carpeta de datos «%1» (falta su carpeta DATOS).")
                                           .arg(QFileInfo(datos).absolutePath()));
    const QByteArray path = QFile::encodeName(lock);
    const bool made = ::mkdir(path.constData(), S_IRWXU) == 0;
    if (!made && errno != EEXIST)
        throw FirebirdEnvironmentError(
            QStringLiteral("No se puede crear la carpeta de bloqueos «%1»: %2. Quien trabaje con estos datos necesita "
                           "poder escribir en «%3».")
                .arg(lock, systemError(), datos));
    struct stat ls = {};
    if (::stat(path.constData(), &ls) != 0 || !S_ISDIR(ls.st_mode))
        throw FirebirdEnvironmentError(
            QStringLiteral("«%1» tendría que ser la carpeta de bloqueos de los datos y no es una carpeta. Bórrelo.").arg(lock));
    // Only its owner can set the mode; someone else's folder is used as it is.
    if (ls.st_uid != ::geteuid()) {
        if (::access(path.constData(), W_OK | X_OK) != 0)
            throw FirebirdEnvironmentError(
                QStringLiteral("No puede escribir en la carpeta de bloqueos «%1», que comparten todos los que trabajan "
                               "con estos datos. Pida permiso de escritura en ella, como el que tiene en «%2».")
                    .arg(lock, datos));
        return;
    }
    if (ls.st_gid != ds.st_gid)
        (void)::chown(path.constData(), static_cast<uid_t>(-1), ds.st_gid);
    const mode_t mode = S_IRWXU | (ds.st_mode & (S_IRWXG | S_IRWXO)) | S_ISGID;
    if ((ls.st_mode & 07777) != mode)
        ::chmod(path.constData(), mode);
}

QString sameFolderKey(const QString& folder)
{
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(QDir(folder).absolutePath()) : canonical;
}

enum class LockMode { None, Server, Local, Private };

struct State {
    std::mutex mutex;
    // The private folder and configuration root, or why they were refused.
    std::optional<QString> root;
    std::optional<QString> rootError;
    LockMode mode = LockMode::None;
    QString lock;
    QString firstDataPath;
};

State& state()
{
    static State s;
    return s;
}

void startClient()
{
    fb::master();
    reapplyTerminationHandler();
}

FirebirdEnvironmentError secondFolder(const QString& first, const QString& second)
{
    return FirebirdEnvironmentError(
        QStringLiteral("Este programa ya trabaja con los datos de «%1»; para abrir los de «%2» ciérrelo y vuelva a "
                       "abrirlo.")
            .arg(first, second));
}

void enterPrivateMode(State& s, const QString& lockFolder)
{
    const QString lock = QDir(lockFolder).absolutePath();
    if (s.mode != LockMode::None && s.mode != LockMode::Private)
        throw secondFolder(s.firstDataPath, lock);
    if (s.mode == LockMode::Private) {
        if (sameFolderKey(s.lock) != sameFolderKey(lock))
            throw secondFolder(s.lock, lock);
        return;
    }
    QDir().mkpath(lock);
    qputenv("FIREBIRD_LOCK", QFile::encodeName(lock));
    qputenv(kPrivateLockFolderVariable, QFile::encodeName(lock));
    s.mode = LockMode::Private;
    s.lock = lock;
    s.firstDataPath = lock;
    startClient();
}

} // namespace

QString preparePrivateFirebirdRoot()
{
    State& s = state();
    std::lock_guard<std::mutex> guard(s.mutex);
    if (s.rootError)
        throw FirebirdEnvironmentError(*s.rootError);
    if (s.root)
        return *s.root;
    try {
        const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
        const QString base = runtime.isEmpty() ? QDir::tempPath() + QStringLiteral("/tejavista-%1").arg(::getuid())
                                               : runtime + QStringLiteral("/tejavista");
        ensurePrivateFolder(base);
        // Qt wants a runtime folder of the user's own, mode 0700: this one is.
        if (runtime.isEmpty())
            qputenv("XDG_RUNTIME_DIR", QFile::encodeName(base));
        const QByteArray preset = qgetenv("FIREBIRD");
        if (!preset.isEmpty()) {
            s.root = QFile::decodeName(preset);
        } else {
            const QString root = base + QStringLiteral("/firebird");
            writeRoot(root);
            qputenv("FIREBIRD", QFile::encodeName(root));
            s.root = root;
        }
    } catch (const FirebirdEnvironmentError& e) {
        s.rootError = e.message();
        throw;
    }
    return *s.root;
}

QString lockFolderFor(const QString& dataPath)
{
    if (!isLocalDataPath(dataPath))
        return {};
    return QDir::cleanPath(QDir(dataFolderOf(dataPath)).absolutePath() + QStringLiteral("/DATOS/bloqueos"));
}

QString prepareFirebirdEnvironment(const QString& dataPath, DataFolderUse use)
{
    preparePrivateFirebirdRoot();
    State& s = state();
    std::lock_guard<std::mutex> guard(s.mutex);
    if (s.mode == LockMode::Private)
        return s.lock;
    const QString inherited = qEnvironmentVariable(kPrivateLockFolderVariable);
    if (s.mode == LockMode::None && !inherited.isEmpty()) {
        enterPrivateMode(s, inherited);
        return s.lock;
    }
    if (!isLocalDataPath(dataPath)) {
        // A server keeps its own locks; the client needs no lock folder.
        if (s.mode == LockMode::None) {
            s.mode = LockMode::Server;
            s.firstDataPath = dataPath;
            startClient();
        }
        return s.mode == LockMode::Local ? s.lock : QString();
    }
    const QString lock = lockFolderFor(dataPath);
    if (s.mode == LockMode::Local) {
        if (sameFolderKey(lock) == sameFolderKey(s.lock))
            return s.lock;
        throw secondFolder(s.firstDataPath, dataFolderOf(dataPath));
    }
    // The engine may already be running without this folder's lock table.
    if (s.mode == LockMode::Server)
        throw secondFolder(s.firstDataPath, dataFolderOf(dataPath));
    if (use == DataFolderUse::New)
        QDir().mkpath(QFileInfo(lock).absolutePath());
    ensureLockFolder(lock);
    qputenv("FIREBIRD_LOCK", QFile::encodeName(lock));
    s.mode = LockMode::Local;
    s.lock = lock;
    s.firstDataPath = dataFolderOf(dataPath);
    startClient();
    return lock;
}

QString prepareFirebirdEnvironmentForProgram()
{
    preparePrivateFirebirdRoot();
    const QString dataPath = findDataPath(DataPathPlaces::standard());
    prepareFirebirdEnvironment(dataPath);
    return dataPath;
}

void prepareFirebirdEnvironmentForPrivateFolders(const QString& lockFolder)
{
    preparePrivateFirebirdRoot();
    State& s = state();
    std::lock_guard<std::mutex> guard(s.mutex);
    enterPrivateMode(s, lockFolder);
}

namespace {

std::atomic<TerminationHandler> gTerminationHandler{nullptr};

} // namespace

void setTerminationHandler(TerminationHandler handler)
{
    gTerminationHandler = handler;
    reapplyTerminationHandler();
}

void reapplyTerminationHandler()
{
    struct sigaction sa = {};
    const TerminationHandler h = gTerminationHandler;
    sa.sa_handler = h ? h : SIG_DFL;
    sigemptyset(&sa.sa_mask);
    sa.sa_flags = SA_RESTART;
    sigaction(SIGINT, &sa, nullptr);
    sigaction(SIGTERM, &sa, nullptr);
}

} // namespace tv
