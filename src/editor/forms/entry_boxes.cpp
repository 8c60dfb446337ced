#include "editor/forms/entry_boxes.h"

using namespace Qt::StringLiterals;

namespace velloria::editor {
namespace {

const QStringList kWeather{u"-"_s, u"晴"_s, u"曇"_s, u"雨"_s, u"雪"_s, u"雷"_s};

int indexOf(const desktop::Combo& box, const QString& text) {
    return box.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
}

} // namespace

EntryBoxes::EntryBoxes(desktop::LineBox& title, desktop::Combo& genre, desktop::Combo& weather, desktop::Combo& privacy)
    : QObject(&title)
    , m_title(title)
    , m_genre(genre)
    , m_weather(weather)
    , m_privacy(privacy) {
    m_genre.makeEditable();
    m_weather.addItems(kWeather);
    m_privacy.addItems({u"公開"_s, u"非公開"_s});
    connect(&m_title, &desktop::LineBox::changed, this, &EntryBoxes::changed);
    connect(&genreLine(), &desktop::LineBox::changed, this, &EntryBoxes::changed);
    connect(&m_weather, &QComboBox::activated, this, &EntryBoxes::changed);
    connect(&m_privacy, &QComboBox::activated, this, &EntryBoxes::changed);
}

desktop::LineBox& EntryBoxes::genreLine() const {
    return static_cast<desktop::LineBox&>(*m_genre.lineEdit());
}

void EntryBoxes::fill(const store::Entry& entry) {
    m_title.setText(entry.title);
    m_title.setCursorPosition(0);
    // A word from elsewhere is in the list as long as its entry is shown, so that a save keeps it.
    while (m_weather.count() > kWeather.size())
        m_weather.removeItem(int(kWeather.size()));
    if (indexOf(m_weather, entry.weather) < 0)
        m_weather.addItem(entry.weather);
    m_weather.setCurrentIndex(indexOf(m_weather, entry.weather));
    m_genre.setCurrentIndex(indexOf(m_genre, entry.genre));
    m_genre.setEditText(entry.genre);
    m_privacy.setCurrentIndex(entry.isPrivate ? 1 : 0);
}

void EntryBoxes::showFirstGenre() {
    if (m_genre.count() > 0)
        m_genre.setCurrentIndex(0);
}

void EntryBoxes::read(store::Entry& entry) const {
    entry.title = m_title.text();
    entry.genre = m_genre.currentText();
    entry.weather = m_weather.currentText();
    entry.isPrivate = m_privacy.currentIndex() != 0;
}

void EntryBoxes::setGenres(const QStringList& genres) {
    const QString shown = m_genre.currentText();
    m_genre.clear();
    m_genre.addItems(genres);
    m_genre.setCurrentIndex(int(genres.indexOf(shown)));
    m_genre.setEditText(shown);
}

void EntryBoxes::setEnabled(bool isOn) {
    for (QWidget* box : std::initializer_list<QWidget*>{&m_title, &m_genre, &m_weather, &m_privacy})
        box->setEnabled(isOn);
}

void EntryBoxes::commitComposition() {
    m_title.commitComposition();
    genreLine().commitComposition();
}

} // namespace velloria::editor
