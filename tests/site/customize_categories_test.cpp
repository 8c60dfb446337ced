#include "site/customize_categories.h"

#include "site/site_home.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

using Panel = site::CustomizePanel;

TEST(CustomizeCategories, StandInTheirOrder) {
    const struct {
        QString text;
        Panel panel;
    } rows[] = {{u"全般"_s, Panel::General},
                {u"Head"_s, Panel::Head},
                {u"Head(分割用)"_s, Panel::Head},
                {u"Body"_s, Panel::Body},
                {u"上下追加テキスト"_s, Panel::HeadFoot},
                {u"上下追加テキスト(分割用)"_s, Panel::HeadFoot},
                {u"上下追加テキスト(Log)"_s, Panel::HeadFoot},
                {u"上下追加テキスト(分割用Log)"_s, Panel::HeadFoot},
                {u"Calender"_s, Panel::Calender},
                {u"本文"_s, Panel::Contents},
                {u"ページ間移動リンク"_s, Panel::PageMoveLink},
                {u"左側フレーム"_s, Panel::CalenderFrame},
                {u"左側フレーム(Head)"_s, Panel::Head},
                {u"左側フレーム(上下追加テキスト)"_s, Panel::HeadFoot}};
    const auto categories = site::customizeCategories();
    ASSERT_EQ(categories.size(), std::size(rows));
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(categories[i].text.toString(), rows[i].text);
        EXPECT_EQ(categories[i].panel, rows[i].panel) << rows[i].text.toStdString();
    }
}

/// "UpText" or "DownText", "_Div" for divided pages, "_Log" for logs; of the frame in a section of its own.
TEST(CustomizeCategories, NameTheirTextsByTheKindOfPage) {
    for (const site::CustomizeCategory& category : site::customizeCategories()) {
        const QString text = category.text.toString();
        SCOPED_TRACE(text.toStdString());
        const bool isFrame = text.startsWith(u"左側フレーム"_s);
        const QString end =
            (text.contains(u"分割用"_s) ? u"_Div"_s : u""_s) + (text.contains(u"Log"_s) ? u"_Log"_s : u""_s);
        if (category.panel == Panel::HeadFoot) {
            EXPECT_EQ(category.piece(site::PageText::Up)->name.toString(), u"UpText"_s + end);
            EXPECT_EQ(category.piece(site::PageText::Down)->name.toString(), u"DownText"_s + end);
            EXPECT_EQ(category.piece(site::PageText::Down)->section.toString(),
                      isFrame ? u"CalenderWindow"_s : u"Body"_s);
        } else if (category.panel == Panel::Head) {
            EXPECT_EQ(category.piece(site::PageText::Up)->name.toString(), u"HeadTag"_s + end);
            EXPECT_EQ(category.piece(site::PageText::Down), category.up);
            EXPECT_EQ(category.up->section.toString(), isFrame ? u"CalenderWindow"_s : u"General"_s);
        } else {
            EXPECT_EQ(category.piece(site::PageText::Up), nullptr);
        }
    }
}

/// The head of a divided log page has a key and no category.
TEST(CustomizeCategories, ReachEachTextButOne) {
    QSet<QString> reached;
    for (const site::CustomizeCategory& category : site::customizeCategories()) {
        for (const core::Setting* setting : {category.up, category.down}) {
            if (setting)
                reached += setting->section.toString() + u' ' + setting->name.toString();
        }
    }
    QStringList missing;
    for (const core::Setting* setting : core::keys::kCustomizeSet) {
        const QString name = setting->section.toString() + u' ' + setting->name.toString();
        if (setting->kind == core::SettingKind::PieceName && !reached.contains(name))
            missing += name;
    }
    EXPECT_EQ(missing, QStringList{u"General HeadTag_Div_Log"_s});
}

TEST(CustomizeCategories, ShowThePageAtAnApplyWhereATextOfTheMonthIsEdited) {
    QStringList shown;
    for (const site::CustomizeCategory& category : site::customizeCategories()) {
        if (category.isShownAtApply)
            shown += category.text.toString();
    }
    EXPECT_EQ(shown, (QStringList{u"Head"_s, u"上下追加テキスト"_s, u"上下追加テキスト(Log)"_s}));
}

} // namespace
} // namespace velloria::tests
