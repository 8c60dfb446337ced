#include "core/day_key.h"

using namespace Qt::StringLiterals;

namespace velloria::core {
namespace {

/// Whether the text has the form of `form`, where "0" stands for a digit.
bool hasForm(QStringView text, QStringView form) {
    if (text.size() != form.size())
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool fits = form[i] == u'0' ? text[i] >= u'0' && text[i] <= u'9' : text[i] == form[i];
        if (!fits)
            return false;
    }
    return true;
}

} // namespace

QString dayKey(const QDate& date) {
    return u"%1/%2/%3"_s.arg(date.year(), 4, 10, QChar(u'0'))
        .arg(date.month(), 2, 10, QChar(u'0'))
        .arg(date.day(), 2, 10, QChar(u'0'));
}

bool isDayKey(QStringView text) {
    return hasForm(text, u"0000/00/00") &&
           QDate::isValid(text.first(4).toInt(), text.sliced(5, 2).toInt(), text.last(2).toInt());
}

bool isMonthKey(QStringView text) {
    return hasForm(text, u"0000/00") && QDate::isValid(text.first(4).toInt(), text.last(2).toInt(), 1);
}

QString monthOf(const QString& day) {
    return day.left(7);
}

QString dayFileName(const QString& day) {
    return QString(day).replace(u'/', u'_');
}

} // namespace velloria::core
