// The settings of the HTML to text converter, and the table that ties each to its place in the settings file.
#pragma once

#include "core/setting.h"
#include "core/settings.h"

#include <QString>

#include <span>

namespace velloria::convert {

/// The settings as a new converter has them. A number is a flag, on when it is not 0, unless it says otherwise.
struct HtmlSettings {
    QString mode; ///< exactly "TEXT": text mode; every other value: HTML mode

    qint16 enter = 0;          ///< runs of three and more line breaks collapse
    qint16 linkTagType = 0;    ///< text mode: 0 keeps link tags, 1 the address before the link text, 2 behind it
    qint16 paragraphBreak = 0; ///< 0 normal; else line breaks go first and "</P" makes two; 2 also keeps P and BR tags

    // Text mode: what becomes text; every other tag goes.
    qint16 textHr = 0;
    qint16 textHrNumber = 0; ///< how many "-" a rule becomes; below 0 as 0
    qint16 textBr = 0;
    qint16 textP = 0;
    qint16 textImg = 0;
    qint16 textAName = 0;      ///< anchors with a name go without link treatment
    qint16 textAHref = 0;      ///< links get the treatment of linkTagType
    qint16 textAHrefSharp = 0; ///< links into the same page go without link treatment

    // HTML mode: what goes or becomes text; every other tag stays.
    qint16 htmlBr = 0;
    qint16 htmlP = 0;
    qint16 htmlXmp = 0;
    qint16 htmlSpan = 0;
    qint16 htmlS = 0;
    qint16 htmlSup = 0;
    qint16 htmlSub = 0;
    qint16 htmlTt = 0;
    qint16 htmlPre = 0;
    qint16 htmlBlockquote = 0;
    qint16 htmlHr = 0;
    qint16 htmlHrNumber = 0; ///< how many "-" a rule becomes; below 0 as 0
    qint16 htmlTable = 0;
    qint16 htmlList = 0;
    qint16 htmlA = 0; ///< kept in the file, without effect
    qint16 htmlEm = 0;
    qint16 htmlStrong = 0;
    qint16 htmlIns = 0;
    qint16 htmlDel = 0;
    qint16 htmlQ = 0;
    qint16 htmlU = 0;
    qint16 htmlI = 0;
    qint16 htmlB = 0;

    bool isTextMode() const { return mode == QLatin1StringView("TEXT"); }
};

/// One number: its row, and the name by which callers set and ask it.
struct HtmlSetting {
    core::Setting setting;
    QStringView name;
    qint16 HtmlSettings::*number;
};

inline constexpr core::Setting kHtmlMode =
    core::SettingsSection{core::SettingsFile::HtmlToText, u"GENERAL"}.text(u"MODE", u"TEXT");

/// All numbers of the file, in the order in which they are saved.
std::span<const HtmlSetting> htmlSettingTable();

/// The member of a name, null when there is none. Names compare exactly. "PBR" has one and is never in the file.
qint16 HtmlSettings::*findHtmlNumber(QStringView name);

} // namespace velloria::convert
