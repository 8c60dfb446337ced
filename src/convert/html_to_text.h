// Diary HTML to plain text, or to reduced HTML, under a settings file. No parser: what counts as a tag and what becomes
// of it follows from the first characters of each "<...>" alone (tag_scan.h), and pages and feeds rely on that.
//
// A caller makes one converter a run, calls Initialize and then Execute once a text.
#pragma once

#include "convert/html_settings.h"

#include <QString>

namespace velloria::convert {

class clsHTML2TEXT {
public:
    /// Reads all settings from the file and sets PBR to 0. False, with everything as it was, when `path` is empty or no
    /// file is there. Throws Failure when a number is out of the 16-bit range; everything is as it was then too.
    bool Initialize(const QString& path);

    /// Writes all settings but PBR. False when the folder of `path` (its text before the last separator) is missing.
    /// Throws Failure, with the file as it was, when the machine refuses.
    bool SaveValue(const QString& path) const;

    /// Sets a value by name: MODE as it stands, the others as 16-bit integers; ENTER also sets A_LINK_TAG_TYPE, which
    /// has no name of its own here. False for an empty key; a key that is not known is true and changes nothing.
    /// Throws Failure when a known key's value is no number or out of range.
    bool SetValue(const QString& key, const QString& value);

    /// A value by name, numbers in decimal; "" for a key that is not known. A_LINK_TAG_TYPE and PBR are known here.
    QString GetValue(const QString& key) const;

    /// The converted text. Unless PBR is 0, `text` itself loses its CR LF pairs. Never fails.
    QString Execute(QString& text) const;

private:
    HtmlSettings m_settings;
};

} // namespace velloria::convert
