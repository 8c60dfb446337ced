// The text of one day of tDiary, part by part.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace velloria::exchange {

struct TDiarySection {
    QString title; ///< plain text, without categories; "" when there is none
    QStringList categories = {};
    QString html;
};

/// The sections of `body` in a style ("tDiary", "Wiki", "GFM"). A text of any other style is one section, as it stands.
std::vector<TDiarySection> sectionsOf(const QString& style, const QString& body);

/// Whether it is one of the three.
bool isKnownStyle(const QString& style);

} // namespace velloria::exchange
