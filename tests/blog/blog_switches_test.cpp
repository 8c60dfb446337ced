#include "blog/blog_posting.h"
#include "core/site_keys.h"

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace defaults = core::keys::blog;

const QString kUnderWrite = u"UnderWrite"_s;
const QString kComment = u"AcceptComment"_s;
const QString kPing = u"AcceptPing"_s;

/// One row of the table of switches, with the setting on or off and the sense of its key, and what comes of it.
struct Row {
    QString name;
    QString type;
    bool isOn;
    QString no;      ///< VALUE_x_No; the place of the second field for words that want one
    QString radioNo; ///< RADIO_VALUE_x_No
    QStringList expected;
};

/// As GoogleTest shows it.
void PrintTo(const Row& row, std::ostream* out) {
    *out << row.name.toStdString() << ' ' << row.type.toStdString() << (row.isOn ? " on " : " off ")
         << row.no.toStdString() << ' ' << row.radioNo.toStdString();
}

class BlogSwitch : public BlogPosting {
protected:
    BlogSwitch() {
        addField({.name = u"first"_s, .type = u"checkbox"_s, .value = u"of the page"_s});
        addField({.name = u"second"_s, .type = u"radio"_s, .value = u"of the page"_s});
        addField({.tag = u"SELECT"_s, .name = u"state"_s, .options = {u"下書き"_s, u"公開"_s, u"公開"_s}});
    }
    void set(const QString& name, bool isOn) {
        setSetting(name == kUnderWrite ? defaults::kStatus
                   : name == kComment  ? defaults::kAcceptComment
                                       : defaults::kAcceptTrackBack,
                   isOn ? u"1"_s : u"0"_s);
    }
    static QString stageOf(const QString& name) {
        return name == kUnderWrite ? u"公開設定エラー"_s
               : name == kComment  ? u"コメント受け入れ設定エラー"_s
                                   : u"トラックバック受け入れ設定エラー"_s;
    }
    void say(const QString& name, const QString& type, const QString& yes, const QString& no = {},
             const QString& radioNo = u"下書き"_s) {
        keys[u"Type_"_s + name] = type;
        keys[u"VALUE_%1_Yes"_s.arg(name)] = yes;
        keys[u"VALUE_%1_No"_s.arg(name)] = no;
        keys[u"RADIO_VALUE_%1_YES"_s.arg(name)] = u"公開"_s;
        keys[u"RADIO_VALUE_%1_No"_s.arg(name)] = radioNo;
    }
    /// What is done between the body and the button, with the values that the two fields have then.
    QStringList switched() const {
        QStringList calls = page.done.mid(page.done.indexOf(u"set name=body form=1"_s) + 1);
        calls = calls.mid(0, calls.indexOf(u"click name=send form=1"_s));
        return calls;
    }
};

class BlogSwitches : public BlogSwitch, public ::testing::WithParamInterface<Row> {};

TEST_P(BlogSwitches, DoesWhatItsRowSays) {
    Row row = GetParam();
    const bool isByIndex = row.type.startsWith(u"INPUT"_s);
    set(row.name, row.isOn);
    say(row.name, row.type,
        isByIndex                 ? inputIndex(u"first"_s)
        : row.type == u"SELECT"_s ? u"state"_s
                                  : u"first"_s,
        isByIndex ? inputIndex(u"second"_s) : row.no, row.radioNo);
    field(u"first"_s).isChecked = !row.isOn;
    post();
    expectPosted();
    for (QString& call : row.expected) {
        call.replace(u"@first"_s, u"input="_s + inputIndex(u"first"_s));
        call.replace(u"@second"_s, u"input="_s + inputIndex(u"second"_s));
    }
    QStringList told = switched();
    for (QString& call : told) {
        if (call.startsWith(u"set "_s)) // with the text
            call +=
                u' ' + field(call.contains(u"second"_s) || call.endsWith(u'=' + inputIndex(u"second"_s)) ? u"second"_s
                                                                                                         : u"first"_s)
                           .value;
    }
    EXPECT_EQ(told, row.expected);
}

/// The rows that all three switches have in common, and those of each.
QList<Row> rowsOf(const QString& name) {
    const QString first = u"name=first form=1"_s;
    const QString second = u"name=second form=1"_s;
    QList<Row> rows;
    for (const bool isOn : {true, false}) {
        const QString on = isOn ? u"check "_s : u"uncheck "_s;
        const QString off = isOn ? u"uncheck "_s : u"check "_s;
        const QString yes = isOn ? u" 公開"_s : u" 下書き"_s;
        const QString no = isOn ? u" 下書き"_s : u" 公開"_s;
        rows += {name, u"NAMECHECKBOX"_s, isOn, u"1"_s, {}, {on + first}};
        for (const QString& opposite : {u"0"_s, u""_s, u"01"_s, u"1x"_s, u"-1"_s, u"１"_s})
            rows += {name, u"NAMECHECKBOX"_s, isOn, opposite, {}, {off + first}};
        rows += {name, u"INPUTSELECT"_s, isOn, {}, u"下書き"_s, {u"set @first"_s + yes, u"set @second"_s + no}};
        if (name == kUnderWrite) {
            rows += {name, u"INPUTCHECKBOX"_s, isOn, {}, u"1"_s, {on + u"@first"_s, off + u"@second"_s}};
            for (const QString& opposite : {u"0"_s, u""_s, u"01"_s, u"下書き"_s})
                rows += {name, u"INPUTCHECKBOX"_s, isOn, {}, opposite, {off + u"@first"_s, on + u"@second"_s}};
        } else {
            rows += {name, u"INPUTCHECKBOX"_s, isOn, {}, u"1"_s, {}};
        }
        if (name == kPing) {
            const QString one = isOn ? u" 1"_s : u" 0"_s;
            const QString zero = isOn ? u" 0"_s : u" 1"_s;
            rows += {name,        u"NAMESELECT"_s, isOn,
                     u"second"_s, u"下書き"_s,     {u"set "_s + first + one, u"set "_s + second + zero}};
            rows += {name, u"SELECT"_s, isOn, {}, u"下書き"_s, {}};
        } else {
            rows += {name,        u"NAMESELECT"_s, isOn,
                     u"second"_s, u"下書き"_s,     {u"set "_s + first + yes, u"set "_s + second + no}};
            rows += {name,
                     u"SELECT"_s,
                     isOn,
                     {},
                     u"下書き"_s,
                     {u"options anywhere=state"_s, isOn ? u"select 1 anywhere=state"_s : u"select 0 anywhere=state"_s}};
            rows += {name, u"SELECT"_s, false, {}, u"無い"_s, {u"options anywhere=state"_s}};
        }
        for (const QString& word : {u"NAME"_s, u"namecheckbox"_s, u"select"_s, u"INPUT"_s, u"TEXTAREA"_s, u""_s})
            rows += {name, word, isOn, u"1"_s, u"1"_s, {}};
        if (name != kUnderWrite) {
            for (const QString& word : {u"DRAFTCLICKNAME"_s, u"DRAFTCLICKINPUT"_s})
                rows += {name, word, isOn, u"1"_s, u"1"_s, {}};
        }
    }
    return rows;
}

INSTANTIATE_TEST_SUITE_P(UnderWrite, BlogSwitches, ::testing::ValuesIn(rowsOf(kUnderWrite)));
INSTANTIATE_TEST_SUITE_P(AcceptComment, BlogSwitches, ::testing::ValuesIn(rowsOf(kComment)));
INSTANTIATE_TEST_SUITE_P(AcceptPing, BlogSwitches, ::testing::ValuesIn(rowsOf(kPing)));

TEST_F(BlogSwitch, ATemplateThatSaysNothingLeavesThePageAsItIs) {
    post();
    expectPosted();
    EXPECT_EQ(switched(), QStringList());
}

TEST_F(BlogSwitch, TheFirstStateOfAllCanNotBeSelected) {
    say(kUnderWrite, u"SELECT"_s, u"state"_s);
    field(u"state"_s).selected = 2;
    set(kUnderWrite, false);
    post();
    expectPosted();
    EXPECT_EQ(field(u"state"_s).selected, 2);
}

TEST_F(BlogSwitch, EachIsSetByASettingOfItsOwnAndInTurn) {
    set(kUnderWrite, true);
    set(kComment, false);
    set(kPing, true);
    for (const QString& name : {kUnderWrite, kComment, kPing}) {
        addField({.name = name, .type = u"checkbox"_s, .isChecked = name == kComment});
        say(name, u"NAMECHECKBOX"_s, name, u"1"_s);
    }
    post();
    expectPosted();
    EXPECT_EQ(switched(), QStringList({u"check name=UnderWrite form=1"_s, u"uncheck name=AcceptComment form=1"_s,
                                       u"check name=AcceptPing form=1"_s}));
}

TEST_F(BlogSwitch, ASettingIsOnAboveZeroAndWithoutAnyWord) {
    say(kUnderWrite, u"NAMECHECKBOX"_s, u"first"_s, u"1"_s);
    const auto isOn = [this](const QString& value) {
        setSetting(defaults::kStatus, value);
        field(u"first"_s).isChecked = value != u"1"_s && value != u"2"_s;
        post();
        return field(u"first"_s).isChecked;
    };
    EXPECT_TRUE(isOn(u"1"_s));
    EXPECT_TRUE(isOn(u"2"_s));
    EXPECT_FALSE(isOn(u"0"_s));
    EXPECT_FALSE(isOn(u"-1"_s));
    EXPECT_FALSE(isOn(u"abc"_s));
    removeSetting(defaults::kStatus);
    field(u"first"_s).isChecked = false;
    post();
    EXPECT_TRUE(field(u"first"_s).isChecked);
}

TEST_F(BlogSwitch, AStateWithoutTheNameOfItsBoxEndsTheRun) {
    for (const QString& name : {kUnderWrite, kComment}) {
        for (const bool isOn : {true, false}) {
            set(name, isOn);
            say(name, u"SELECT"_s, u""_s);
            desk.details.clear();
            post();
            expectStage(stageOf(name));
        }
        keys[u"Type_"_s + name] = u"NAME"_s;
    }
    EXPECT_EQ(page.calls(u"options"_s), QStringList());
    EXPECT_EQ(page.calls(u"click"_s), QStringList());
}

TEST_F(BlogSwitch, WhatThePageOrTheTemplateLacksIsToldByItsStage) {
    struct Lack {
        QString type;
        QString yes;
        QString no;
    };
    const QString there = inputIndex(u"first"_s);
    for (const QString& name : {kUnderWrite, kComment, kPing}) {
        QList<Lack> lacks{{u"NAMECHECKBOX"_s, u"missing"_s, u"1"_s},
                          {u"NAMECHECKBOX"_s, u""_s, u"1"_s},
                          {u"NAMESELECT"_s, u"missing"_s, u"first"_s},
                          {u"NAMESELECT"_s, u"first"_s, u"missing"_s},
                          {u"NAMESELECT"_s, u"first"_s, u""_s},
                          {u"INPUTSELECT"_s, u"99"_s, there},
                          {u"INPUTSELECT"_s, there, u"99"_s},
                          {u"INPUTSELECT"_s, u""_s, there},
                          {u"INPUTSELECT"_s, there, u""_s},
                          {u"INPUTSELECT"_s, u"first"_s, there},
                          {u"INPUTSELECT"_s, there, u"32768"_s}};
        if (name == kUnderWrite)
            lacks += {{u"INPUTCHECKBOX"_s, u"99"_s, there},
                      {u"INPUTCHECKBOX"_s, there, u"99"_s},
                      {u"INPUTCHECKBOX"_s, there, u"x"_s},
                      {u"INPUTCHECKBOX"_s, u"-32769"_s, there}};
        if (name != kPing)
            lacks += Lack{u"SELECT"_s, u"missing"_s, {}};
        for (const Lack& lack : lacks) {
            say(name, lack.type, lack.yes, lack.no);
            desk.details.clear();
            post();
            SCOPED_TRACE((name + u' ' + lack.type + u' ' + lack.yes + u' ' + lack.no).toStdString());
            expectStage(stageOf(name));
            EXPECT_FALSE(page.isRunning);
        }
        keys[u"Type_"_s + name] = u"NAME"_s;
    }
    EXPECT_EQ(page.calls(u"click"_s), QStringList());
}

// The button of a draft.

TEST_F(BlogSwitch, ADraftHasAButtonOfItsOwnWhereTheTemplateSaysSo) {
    addField({.name = u"draft"_s, .type = u"submit"_s, .leadsTo = {doneUrl}});
    const auto clicked = [this](const QString& type, const QString& value, bool isPublic) {
        set(kUnderWrite, isPublic);
        say(kUnderWrite, type, value);
        page.done.clear();
        post();
        return page.calls(u"click"_s);
    };
    const QStringList postButton{u"click name=send form=1"_s};
    const QString index = inputIndex(u"draft"_s);
    EXPECT_EQ(clicked(u"DRAFTCLICKNAME"_s, u"draft"_s, false), QStringList{u"click name=draft form=1"_s});
    EXPECT_EQ(clicked(u"DRAFTCLICKNAME"_s, u"draft"_s, true), postButton);
    EXPECT_EQ(clicked(u"DRAFTCLICKINPUT"_s, index, false), QStringList{u"click input="_s + index});
    EXPECT_EQ(clicked(u"DRAFTCLICKINPUT"_s, index, true), postButton);
    EXPECT_EQ(clicked(u"DRAFTCLICKINPUT"_s, u"no number"_s, true), postButton); // never looked at
    EXPECT_EQ(clicked(u"draftclickname"_s, u"draft"_s, false), postButton);
    EXPECT_EQ(clicked(u"NAMECHECKBOX"_s, u"first"_s, false), postButton);
    EXPECT_EQ(lastStatus(), u"日記投稿完了！画像ファイルは手動でアップロードして下さい。"_s);
}

TEST_F(BlogSwitch, AButtonOfADraftThatIsNotThereEndsTheRun) {
    set(kUnderWrite, false);
    for (const auto& [type, value] :
         std::initializer_list<std::pair<QString, QString>>{{u"DRAFTCLICKNAME"_s, u"missing"_s},
                                                            {u"DRAFTCLICKNAME"_s, u""_s},
                                                            {u"DRAFTCLICKINPUT"_s, u"99"_s},
                                                            {u"DRAFTCLICKINPUT"_s, u"draft"_s}}) {
        say(kUnderWrite, type, value);
        desk.details.clear();
        post();
        expectStage(u"投稿ボタンクリックエラー"_s);
    }
    EXPECT_FALSE(page.done.contains(u"click name=send form=1"_s));
}

} // namespace
} // namespace velloria::tests
