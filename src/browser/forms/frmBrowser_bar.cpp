// The bar above the page.
#include "browser/forms/frmBrowser.h"
#include "desktop/combo.h"
#include "desktop/command.h"
#include "desktop/icons.h"

#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace velloria::browser {
namespace {

desktop::Combo* makeBox(const QString& name, const QString& tip) {
    auto* box = new desktop::Combo;
    box->setObjectName(name);
    box->setToolTip(tip);
    box->setAccessibleName(tip);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(8);
    return box;
}

} // namespace

QToolBar* frmBrowser::makeToolBar() {
    auto* bar = new QToolBar;
    bar->setObjectName(u"Toolbar1"_s);
    bar->setIconSize({16, 16});
    const auto add = [&](const QString& name, const QString& tip, desktop::IconName icon, auto action) {
        QAction* button = bar->addAction(desktop::icon(icon, palette()), tip);
        button->setObjectName(name);
        connect(button, &QAction::triggered, this, [this, action] {
            desktop::runCommand(m_context.desk, [&] {
                m_context.desk.status(u"Webページ表示中..."_s);
                Stop();
                action();
            });
        });
        // A tool bar's buttons take no focus of themselves, and then no key reaches them.
        QWidget* widget = bar->widgetForAction(button);
        widget->setObjectName(name + u"_Button"_s);
        widget->setFocusPolicy(Qt::TabFocus);
        widget->setAccessibleName(tip);
    };
    const auto trigger = [this](QWebEnginePage::WebAction action) {
        return [this, action] {
            if (m_view)
                m_view->page()->triggerAction(action);
        };
    };
    using desktop::IconName;
    add(u"Button1"_s, u"日記のプレビューを表示します"_s, IconName::PreviewPage, [this] { previewPage(); });
    bar->addSeparator()->setObjectName(u"Button2"_s);
    add(u"Button3"_s, u"表示しているページを更新します"_s, IconName::Refresh, trigger(QWebEnginePage::Reload));
    add(u"Button4"_s, u"前のページに戻ります"_s, IconName::Back, trigger(QWebEnginePage::Back));
    add(u"Button5"_s, u"次のページに進みます"_s, IconName::Forward, trigger(QWebEnginePage::Forward));
    add(u"Button6"_s, u"ホームページを表示します"_s, IconName::Home, [this] { goHome(); });
    return bar;
}

QWidget* frmBrowser::makeBar() {
    m_toolbar = makeToolBar();

    auto* address = makeBox(u"cmbURL"_s, u"アドレス"_s);
    m_address = address;
    address->makeEditable();
    address->installEventFilter(this);

    auto* favourites = makeBox(u"CmbFavorite"_s, u"お気に入り"_s);
    m_favourites = favourites;
    favourites->setAction(true);
    favourites->setPlaceholderText(u"お気に入り"_s);
    connect(favourites, &QComboBox::activated, this, &frmBrowser::pickFavourite);

    m_site = makeBox(u"cmbFindSite"_s, u"検索サイト"_s);
    auto* words = makeBox(u"cmbFind"_s, u"検索する言葉"_s);
    m_words = words;
    words->makeEditable();
    words->installEventFilter(this);

    auto* find = new QWidget;
    find->setObjectName(u"PicBoxFind"_s);
    auto* findLayout = new QHBoxLayout(find);
    findLayout->setContentsMargins(0, 0, 0, 0);
    findLayout->addWidget(m_site, 1);
    findLayout->addWidget(m_words, 1);

    auto* bar = new QWidget;
    bar->setObjectName(u"bCoolBar"_s);
    auto* upper = new QHBoxLayout;
    upper->addWidget(m_toolbar);
    upper->addWidget(m_address, 1);
    auto* lower = new QHBoxLayout;
    lower->addWidget(m_favourites, 1);
    lower->addWidget(find, 2);
    auto* rows = new QVBoxLayout(bar);
    rows->setContentsMargins(2, 2, 2, 0);
    rows->setSpacing(2);
    rows->addLayout(upper);
    rows->addLayout(lower);
    return bar;
}

} // namespace velloria::browser
