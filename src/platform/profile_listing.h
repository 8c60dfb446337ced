// The lines of a profile file for somebody who checks one: also those that no reader of settings sees.
#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace velloria::platform {

struct ListedLine {
    enum class Kind {
        Section,
        Key,
        Lost, ///< neither, and no comment and no empty line
    };
    Kind kind = Kind::Lost;
    int number = 0;      ///< of the line, from 1
    QString section;     ///< that begins here, or in which the line stands; "" in front of the first
    QString name;        ///< of a key
    QString value;       ///< of a key: all of it, however long; of a lost line its text
    bool isRead = false; ///< not so behind another one of the same name, in such a section, and of a lost line
};

/// Every line but empty ones and comments, in the file's order.
std::vector<ListedLine> listProfile(const QByteArray& bytes);

} // namespace velloria::platform
