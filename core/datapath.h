#pragma once

#include <QString>

namespace tv {

// Where the start-up rule looks. On Windows these were the drive root, the
// install folder and the executable's folder; here:
//   rootDir    /etc/tejavista            (a machine-wide morvanI.sys to copy)
//   installDir ~/.config/tejavista       (the user's morvanI.sys)
//   exeDir     ~/.local/share/tejavista  (the data folder of a new install)
struct DataPathPlaces {
    QString rootDir;
    QString installDir;
    QString exeDir;

    static DataPathPlaces standard();
};

inline const QString kDataPathFile = QStringLiteral("morvanI.sys");
inline const QString kLocalMarker = QStringLiteral("libreria.dll");
inline const QString kNoThreadsMarker = QStringLiteral("nohilos.txt");
inline const QString kAgendaPerAgentMarker = QStringLiteral("vista_agendai.fri");

// Runs the fallback order once: copy the root's file when the user has none
// (never over one), read its first line, or write "LOCALHOST:" + exeDir;
// then a "libreria.dll" in the data folder turns the path into that plain
// local folder.
QString findDataPath(const DataPathPlaces& places);

// The folder part of a data path: "host:/dir" gives "/dir", a plain path itself.
QString dataFolderOf(const QString& dataPath);
// True when the path names no server (the files are opened embedded).
bool isLocalDataPath(const QString& dataPath);
// The path in the form used to reach shared documents over the network.
QString networkPathOf(const QString& dataPath);

// The process-wide data path and its network form, settled before the data
// module connects.
struct DataPaths {
    QString dataPath;
    QString networkPath;
};
DataPaths& currentDataPaths();

} // namespace tv
