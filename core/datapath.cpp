#include "datapath.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTextStream>

namespace tv {

DataPathPlaces DataPathPlaces::standard()
{
    DataPathPlaces p;
    p.rootDir = QStringLiteral("/etc/tejavista");
    p.installDir = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                   QStringLiteral("/tejavista");
    p.exeDir = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
               QStringLiteral("/tejavista");
    return p;
}

namespace {

// A one-character "host" is a Windows drive letter, not a server.
int hostSeparator(const QString& path)
{
    if (path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1String("\\\\")))
        return -1;
    const int colon = path.indexOf(QLatin1Char(':'));
    if (colon <= 1)
        return -1;
    return colon;
}

} // namespace

QString dataFolderOf(const QString& dataPath)
{
    const int sep = hostSeparator(dataPath);
    return sep < 0 ? dataPath : dataPath.mid(sep + 1);
}

bool isLocalDataPath(const QString& dataPath)
{
    return hostSeparator(dataPath) < 0;
}

QString findDataPath(const DataPathPlaces& places)
{
    const QString rootFile = places.rootDir + QLatin1Char('/') + kDataPathFile;
    const QString userFile = places.installDir + QLatin1Char('/') + kDataPathFile;
    if (QFileInfo::exists(rootFile) && !QFileInfo::exists(userFile)) {
        QDir().mkpath(places.installDir);
        QFile::copy(rootFile, userFile);
    }
    QString dataPath;
    QFile f(userFile);
    if (f.open(QIODevice::ReadOnly | QIODevice::Text)) {
        QTextStream in(&f);
        dataPath = in.readLine().trimmed();
        f.close();
    } else {
        dataPath = QStringLiteral("LOCALHOST:") + places.exeDir;
        QDir().mkpath(places.installDir);
        QFile w(userFile);
        if (w.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
            w.write((dataPath + QLatin1Char('\n')).toUtf8());
    }
    // The marker is looked for where the files are; a server's folder is only
    // visible when the server is this machine.
    const int sep = hostSeparator(dataPath);
    const bool here = sep < 0 || dataPath.left(sep).compare(QLatin1String("LOCALHOST"), Qt::CaseInsensitive) == 0;
    const QString folder = dataFolderOf(dataPath);
    if (here && QFileInfo::exists(folder + QLatin1Char('/') + kLocalMarker))
        dataPath = folder;
    return dataPath;
}

QString networkPathOf(const QString& dataPath)
{
    QString p = dataPath;
    if (p.mid(1, 2) == QLatin1String(":\\") || p.contains(QLatin1String("LOCALHOST"))) {
        p.replace(QLatin1String("LOCALHOST:"), QString());
        p.replace(QLatin1String("\\\\LOCALHOST\\"), QString());
        return p;
    }
    if (p.startsWith(QLatin1String("\\\\"))) {
        for (char d = 'C'; d <= 'Z'; ++d)
            p.replace(QStringLiteral("\\%1:\\").arg(QLatin1Char(d)), QStringLiteral("\\"));
        return p;
    }
    const int sep = hostSeparator(p);
    if (sep > 0 && p.mid(sep + 1).startsWith(QLatin1Char('/'))) {
        // A Linux server folder: the share of that server, smb style.
        return QStringLiteral("//") + p.left(sep) + p.mid(sep + 1);
    }
    if (p.startsWith(QLatin1Char('/')))
        return p;
    for (char d = 'C'; d <= 'Z'; ++d)
        p.replace(QStringLiteral(":%1:\\").arg(QLatin1Char(d)), QStringLiteral("\\"));
    return QStringLiteral("\\\\") + p;
}

DataPaths& currentDataPaths()
{
    static DataPaths paths;
    return paths;
}

} // namespace tv
