// The session state: what start-up finds out about the run, the user and their folders.
#pragma once

#include <QString>

namespace velloria::core {

/// Version of the database that this program expects.
inline constexpr int kDatabaseVersion = 220;

struct Version {
    int major = 2;
    int minor = 2;
    int revision = 0;

    /// "2.2.0"
    QString text() const;
    /// The digits joined without points: 2.10.3 gives 2103.
    qint32 joined() const;
};

inline constexpr Version kProgramVersion{};

/// `main` owns the one object and start-up fills it. A folder ends in the separator; an unset one is "".
struct Session {
    QString dbFileName;         ///< always "diary.mdb"
    QString MyPath;             ///< folder of the program and its factory files
    QString FilePath;           ///< folder of the site on the user's disk
    QString FileName;           ///< name of the site's month file
    QString DiaryIniFile;       ///< full path of the user's "diary.ini"
    QString CustIniFile;        ///< full path of the active customize set
    QString FrameIniFile;       ///< full path of the frame settings
    QString RSSIniFile;         ///< full path of the feed settings
    QString HaloScanIniFile;    ///< full path of the comment service's settings
    QString BlogIniFile;        ///< full path of the blog settings
    QString Today;              ///< date of the run, "yyyy/mm/dd"
    QString EnterDay;           ///< the day that editor and calendar work on, "yyyy/mm/dd"
    QString DataPath;           ///< generated local pages, "Customize", "DiaryParts" and the other working folders
    QString FavoriteFolderPath; ///< the user's favourites
    qint32 CurrentVersion = 0;  ///< the program's version, joined
    bool IsLogin = false;       ///< the run was entered through the login window
    QString UserID;             ///< "" in single-user mode
    QString UserPath;           ///< holds "diary.ini" and "diary.mdb"
    bool IsLarkportDll = false;
    bool IsWrenportDll = false;
    bool IsChimerDll = false;
    bool IsVellInfoDll = false;

    QString databaseFile() const { return UserPath + dbFileName; }
};

} // namespace velloria::core
