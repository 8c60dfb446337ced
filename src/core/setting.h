// One setting: a row of the catalogue.
//
// The catalogue spells each key of the settings files once: core/keys.h has those of the user's "diary.ini",
// core/site_keys.h those of the site, core/blog_keys.h those of blogs, core/program_keys.h those of the files beside
// the program, and convert/html_settings.cpp those of the conversion to text. An odd spelling is the file format's.
#pragma once

#include <QStringView>

namespace velloria::core {

/// The files that hold settings; core/settings.h knows where each lies.
enum class SettingsFile {
    Diary,        ///< what the user has chosen for the program, "diary.ini"
    Customize,    ///< the look of the pages: the customize set that is chosen
    Frame,        ///< division of a month, and frames
    Rss,          ///< feeds
    HaloScan,     ///< the comment service
    Blog,         ///< posting
    BlogUserData, ///< logins and addresses of the user's blogs, a section each
    BlogTemplate, ///< how the pages of a blog service are filled in: one of many files, which the reader names
    Users,        ///< "velluser.ini", beside the program
    Endpoints,    ///< the addresses of others, "endpoints.ini" beside the program
    HtmlToText,   ///< how the export turns pages into text, "HTML2TXT.ini" beside the program
    Update,       ///< what the maker offers, "update.txt" beside the program
    Shortcut,     ///< a favourite: one of many files, which the reader names
};

enum class SettingKind {
    Text,
    Number,    ///< of 16 bits
    Flag,      ///< a number, 1 for on
    Path,      ///< name of a file or folder: stored so that every character comes back (core/stored_name.h)
    PieceName, ///< names a text piece, "Customize/<name>.htm"
};

/// The views are literals, except in what inSection() and named() return.
struct Setting {
    SettingsFile file;
    QStringView section;
    QStringView name;
    QStringView whenMissing; ///< what a file without the key means, as the file would hold it
    SettingKind kind = SettingKind::Text;
    bool isPersonal = false; ///< says something of its user: a set for others leaves it out

    constexpr Setting personal() const {
        Setting setting = *this;
        setting.isPersonal = true;
        return setting;
    }
};

/// Makes the rows of one section of a file.
struct SettingsSection {
    SettingsFile file;
    QStringView name;

    constexpr Setting text(QStringView key, QStringView whenMissing = {}) const {
        return {file, name, key, whenMissing};
    }
    constexpr Setting number(QStringView key, QStringView whenMissing = {}) const {
        return {file, name, key, whenMissing, SettingKind::Number};
    }
    constexpr Setting flag(QStringView key, QStringView whenMissing = {}) const {
        return {file, name, key, whenMissing, SettingKind::Flag};
    }
    constexpr Setting path(QStringView key) const { return {file, name, key, {}, SettingKind::Path}; }
    constexpr Setting pieceName(QStringView key) const { return {file, name, key, {}, SettingKind::PieceName}; }
};

/// The row in a section that has no fixed name, a user's for example. `section` must outlive what is returned.
constexpr Setting inSection(Setting setting, QStringView section) {
    setting.section = section;
    return setting;
}

/// The row under a key that has no fixed name. `name` must outlive what is returned.
constexpr Setting named(Setting setting, QStringView name) {
    setting.name = name;
    return setting;
}

/// Where a window stood, in twips: a row is there as far as its file has such a key.
struct PlaceSettings {
    Setting top;
    Setting left;
    Setting height;
    Setting width;
};

/// The place under the usual names of a section of "diary.ini".
constexpr PlaceSettings placeIn(QStringView section) {
    const SettingsSection rows{SettingsFile::Diary, section};
    return {rows.number(u"Top"), rows.number(u"Left"), rows.number(u"Height"), rows.number(u"Width")};
}

/// The place under other names, of a window whose size is not kept.
constexpr PlaceSettings placeUnder(Setting top, Setting left) {
    return {top, left, named(top, {}), named(left, {})};
}

} // namespace velloria::core
