#include "fbenvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "fbapi.h"

#include <atomic>
#include <csignal>
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

} // namespace

QString prepareFirebirdEnvironment()
{
    const QByteArray preset = qgetenv("FIREBIRD");
    const QString base = QStringLiteral("/tmp/tejavista-%1").arg(getuid());
    if (qEnvironmentVariableIsEmpty("FIREBIRD_LOCK")) {
        const QString lock = base + QStringLiteral("/lock");
        QDir().mkpath(lock);
        qputenv("FIREBIRD_LOCK", QFile::encodeName(lock));
    }
    if (!preset.isEmpty()) {
        fb::master();
        reapplyTerminationHandler();
        return QString::fromLocal8Bit(preset);
    }

    const QString sys = systemRoot();
    const QString root = base + QStringLiteral("/firebird");
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
    qputenv("FIREBIRD", QFile::encodeName(root));
    fb::master();
    reapplyTerminationHandler();
    return root;
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
