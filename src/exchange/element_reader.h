// The full-width tags of an imported text.
#pragma once

#include <QHash>
#include <QString>

namespace velloria::exchange {

inline constexpr char16_t kDayTag[] = u"＜日付＞";
inline constexpr char16_t kTitleTag[] = u"＜タイトル＞";
inline constexpr char16_t kContentsTag[] = u"＜内容＞";

/// The text up to each closing tag of the day counts as one entry; the last one may lack it.
int countEntries(const QString& text);

/// Reads the elements of one entry after the other. A tag that is missing is no failure.
///
///     ElementReader reader(text);
///     for (int left = countEntries(text); left > 0; --left, reader.moveOn())
///         add(reader.element(dayTag), reader.element(titleTag), reader.element(contentsTag));
///
/// What was found once is not searched for again, so that the largest
/// text takes no longer than it is long.
class ElementReader {
public:
    /// The text outlives this.
    explicit ElementReader(const QString& text);

    /// What stands between the first such tag of the rest and the first closing one, wherever they are: a tag that is
    /// not there counts as one in front of the rest. Throws platform::Failure when the closing tag comes first.
    QString element(const QString& tag);

    /// The rest becomes what stands behind the first closing tag of the contents.
    void moveOn();

private:
    qsizetype placeOf(const QString& tag);

    const QString& m_text;
    qsizetype m_begin = 0;             ///< of the rest
    int m_number = 1;                  ///< of the entry
    QHash<QString, qsizetype> m_found; ///< where each tag was found last, -1 when the rest has none
};

} // namespace velloria::exchange
