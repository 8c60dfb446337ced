// Text pieces and sets in the customize dialog.
#include "customize_home.h"
#include "site/text_piece.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace velloria::tests {
namespace {

namespace keys = core::keys;

class CustomizePieces : public CustomizeHome {
protected:
    void SetUp() override {
        CustomizeHome::SetUp();
        writePiece(u"one"_s, "<p>1</p>\n");
        writePiece(u"two"_s, "<p>2</p>");
        setSetting(keys::body::kUpText, u"one"_s);
    }
    QStringList asked() const { return desk.texts(u"message"_s); }
    void openTexts() {
        open();
        category(u"上下追加テキスト"_s);
    }
    static inline const QString kBox = u"cmbUpDownText"_s;
    static inline const QString kPane = u"txtUpDownText"_s;
    static inline const QString kQuestion = u"変更されていますが、保存しますか？"_s;
};

TEST_F(CustomizePieces, EachCategoryShowsThePieceOfItsKey) {
    const struct {
        QString category;
        const core::Setting& up;
        const core::Setting* down;
    } cases[] = {
        {u"Head"_s, keys::general::kHeadTag, nullptr},
        {u"Head(分割用)"_s, keys::general::kHeadTagDiv, nullptr},
        {u"上下追加テキスト"_s, keys::body::kUpText, &keys::body::kDownText},
        {u"上下追加テキスト(分割用)"_s, keys::body::kUpTextDiv, &keys::body::kDownTextDiv},
        {u"上下追加テキスト(Log)"_s, keys::body::kUpTextLog, &keys::body::kDownTextLog},
        {u"上下追加テキスト(分割用Log)"_s, keys::body::kUpTextDivLog, &keys::body::kDownTextDivLog},
        {u"左側フレーム(Head)"_s, keys::calender_window::kHeadTag, nullptr},
        {u"左側フレーム(上下追加テキスト)"_s, keys::calender_window::kUpText, &keys::calender_window::kDownText}};
    const auto pieceOf = [](const core::Setting& setting) {
        return setting.section.left(4).toString() + setting.name.toString();
    };
    for (const auto& c : cases) {
        for (const core::Setting* setting : {&c.up, c.down}) {
            if (!setting)
                continue;
            writePiece(pieceOf(*setting), "text of " + pieceOf(*setting).toLatin1());
            setSetting(*setting, pieceOf(*setting));
        }
    }
    open();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.category.toStdString());
        category(c.category);
        const QString list = c.down ? kBox : u"cmbHeadTag"_s;
        const QString text = c.down ? kPane : u"txtHeadTag"_s;
        if (c.down) {
            EXPECT_EQ(tag(field<QWidget>(u"OptUpDownState"_s)), u"Head"_s);
        }
        EXPECT_EQ(box(list).currentText(), pieceOf(c.up));
        EXPECT_EQ(pane(text).text(), u"text of "_s + pieceOf(c.up));
        // An edit goes to that piece and no other key.
        pane(text).setText(u"new "_s + pieceOf(c.up));
        press(u"Btn_Apply"_s);
        EXPECT_EQ(piece(pieceOf(c.up)), "new " + pieceOf(c.up).toLatin1());
        pick(list, u"two"_s);
        EXPECT_EQ(stored(c.up), u"two"_s);
        if (!c.down)
            continue;
        field<QRadioButton>(u"OptUpDownDown"_s).click();
        settle();
        EXPECT_EQ(tag(field<QWidget>(u"OptUpDownState"_s)), u"Foot"_s);
        EXPECT_EQ(pane(text).text(), u"text of "_s + pieceOf(*c.down));
        pick(list, u"one"_s);
        EXPECT_EQ(stored(*c.down), u"one"_s);
        EXPECT_EQ(stored(c.up), u"two"_s);
        field<QRadioButton>(u"OptUpDownUp"_s).click();
        settle();
        EXPECT_EQ(box(list).currentText(), u"two"_s);
    }
}

TEST_F(CustomizePieces, AnUntouchedPieceKeepsItsBytes) {
    const QByteArray odd("\xff\x81 a\nb\rc &#12354;\r\n");
    writePiece(u"one"_s, odd);
    openTexts();
    field<QRadioButton>(u"OptUpDownDown"_s).click();
    field<QRadioButton>(u"OptUpDownUp"_s).click();
    press(u"Btn_OK"_s);
    EXPECT_EQ(piece(u"one"_s), odd);
}

TEST_F(CustomizePieces, SaveWhatIsTypedAtAnApply) {
    openTexts();
    pane(kPane).setText(u"é 上\r\n"_s);
    EXPECT_EQ(tag(pane(kPane)), u"Yes"_s);
    EXPECT_EQ(piece(u"one"_s), "<p>1</p>\n");
    leave();
    EXPECT_EQ(tag(pane(kPane)), u"Yes"_s) << "nothing is shown that could clear it";
    press(u"Btn_Apply"_s);
    EXPECT_EQ(piece(u"one"_s), "&#233; \x8f\xe3\r\n");
    EXPECT_EQ(stored(keys::body::kUpText), u"one"_s);
    EXPECT_EQ(tag(pane(kPane)), u""_s);
}

TEST_F(CustomizePieces, AreSharedByTheCategoriesThatNameThem) {
    setSetting(keys::body::kDownText, u"one"_s);
    openTexts();
    pane(kPane).setText(u"both"_s);
    press(u"Btn_Apply"_s);
    field<QRadioButton>(u"OptUpDownDown"_s).click();
    settle();
    EXPECT_EQ(pane(kPane).text(), u"both"_s);
}

TEST_F(CustomizePieces, ChoosingAnotherWithAnUnsavedTextAsks) {
    openTexts();
    pane(kPane).setText(u"typed"_s);
    desk.answers = {u"yes"_s};
    pick(kBox, u"two"_s);
    EXPECT_EQ(asked(), QStringList{kQuestion});
    EXPECT_EQ(boxTitles(), QSet<QString>{u"Velloria"_s});
    EXPECT_EQ(piece(u"one"_s), "typed");
    EXPECT_EQ(piece(u"two"_s), "<p>2</p>");
    EXPECT_EQ(stored(keys::body::kUpText), u"two"_s);
    pane(kPane).setText(u"dropped"_s);
    desk.answers = {u"no"_s};
    pick(kBox, u"one"_s);
    EXPECT_EQ(piece(u"two"_s), "<p>2</p>");
    EXPECT_EQ(pane(kPane).text(), u"typed"_s);
    EXPECT_EQ(stored(keys::body::kUpText), u"one"_s);
}

TEST_F(CustomizePieces, LeavingAnUnsavedTextAsks) {
    openTexts();
    pane(kPane).setText(u"typed"_s);
    desk.answers = {u"yes"_s};
    category(u"Body"_s);
    EXPECT_EQ(asked(), QStringList{kQuestion});
    EXPECT_EQ(piece(u"one"_s), "typed");
    category(u"上下追加テキスト"_s);
    pane(kPane).setText(u"dropped"_s);
    desk.answers = {u"no"_s};
    field<QRadioButton>(u"OptUpDownDown"_s).click();
    settle();
    EXPECT_EQ(piece(u"one"_s), "typed");
    EXPECT_EQ(box(kBox).currentIndex(), -1);
}

/// The list tells of the item that is chosen already as well.
TEST_F(CustomizePieces, ThePresentCategoryAgainLeavesNothing) {
    openTexts();
    pane(kPane).setText(u"typed"_s);
    category(u"上下追加テキスト"_s);
    EXPECT_EQ(pane(kPane).text(), u"typed"_s);
    EXPECT_TRUE(asked().isEmpty());
    press(u"Btn_OK"_s);
    EXPECT_EQ(piece(u"one"_s), "typed");
}

TEST_F(CustomizePieces, AnEditKeepsOddCharacters) {
    writePiece(u"one"_s, QByteArray("a\0b \xa0 &#160;&#8232;&nbsp;&#60; \xfa\x55", 31));
    openTexts();
    QTest::keyClick(&pane(kPane), Qt::Key_X);
    press(u"Btn_Apply"_s);
    EXPECT_EQ(piece(u"one"_s), "x" + QByteArray("a\0b \xa0 &#160;&#8232;&nbsp;&#60; \xfa\x55", 31));
}

TEST_F(CustomizePieces, ATextThatCantBeSavedKeepsItsPlace) {
    openTexts();
    pane(kPane).setText(u"typed"_s);
    ASSERT_TRUE(QFile::setPermissions(site::textPieceFile(session, u"one"_s), QFile::ReadOwner));
    desk.answers = {u"yes"_s, u"yes"_s, u"yes"_s};
    pick(kBox, u"two"_s);
    EXPECT_EQ(box(kBox).currentText(), u"one"_s);
    category(u"Body"_s);
    EXPECT_EQ(box(u"cmbCategory"_s).currentText(), u"上下追加テキスト"_s);
    field<QRadioButton>(u"OptUpDownDown"_s).click();
    settle();
    EXPECT_TRUE(field<QRadioButton>(u"OptUpDownUp"_s).isChecked());
    EXPECT_EQ(pane(kPane).text(), u"typed"_s);
    EXPECT_TRUE(canApply());
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 3);
}

TEST_F(CustomizePieces, ANewOneTakesTheTextOfTheBox) {
    for (const bool isHead : {false, true}) {
        open();
        category(isHead ? u"Head"_s : u"上下追加テキスト"_s);
        if (isHead)
            pick(u"cmbHeadTag"_s, u"one"_s);
        const QString list = isHead ? u"cmbHeadTag"_s : kBox;
        const QString make = isHead ? u"Btn_Head_New"_s : u"Btn_New_UpDwn"_s;
        const core::Setting& key = isHead ? keys::general::kHeadTag : keys::body::kUpText;
        const QString name = isHead ? u"head"_s : u"上"_s;
        pane(isHead ? u"txtHeadTag"_s : kPane).setText(u"typed"_s);
        desk.answers = {name};
        desk.events = {};
        press(make);
        EXPECT_EQ(told(), (QStringList{u"input: 新しいテキストの名前を入力してください。\r\n"
                                       "(ファイル名に使用できない文字は使用しないでください。)"_s,
                                       u"message: 新しいテキストを作成しました。"_s,
                                       u"status: 新しいテキストを作成しました。"_s}));
        EXPECT_EQ(piece(name), "typed");
        EXPECT_EQ(piece(u"one"_s), "<p>1</p>\n");
        EXPECT_EQ(box(list).currentText(), name);
        EXPECT_EQ(stored(key), name);
        desk.answers = {u"two"_s, u"no"_s};
        press(make);
        EXPECT_EQ(piece(u"two"_s), "<p>2</p>");
        EXPECT_EQ(box(list).currentText(), name);
        desk.answers = {u""_s, u"no"_s};
        press(u"Btn_Cancel"_s);
    }
}

TEST_F(CustomizePieces, ANewOneOfAnUntouchedTextIsACopyByteByByte) {
    writePiece(u"one"_s, "\xff\x81\n");
    openTexts();
    desk.answers = {u"copy"_s};
    press(u"Btn_New_UpDwn"_s);
    EXPECT_EQ(piece(u"copy"_s), "\xff\x81\n");
}

TEST_F(CustomizePieces, DeletingGoesOnWithTheNextOne) {
    writePiece(u"three"_s, "3");
    openTexts();
    desk.answers = {u"no"_s};
    desk.events = {};
    press(u"Btn_Delete_UpDwn"_s);
    EXPECT_EQ(told(), (QStringList{u"message: 「one」を消去します。\r\nよろしいですか？"_s,
                                   u"status: 消去を中止しました。"_s}));
    EXPECT_EQ(piece(u"one"_s), "<p>1</p>\n");
    for (const QString& next : {u"three"_s, u"two"_s, u""_s}) {
        desk.answers = {u"yes"_s};
        press(u"Btn_Delete_UpDwn"_s);
        EXPECT_EQ(box(kBox).currentText(), next);
        EXPECT_EQ(stored(keys::body::kUpText), next);
    }
    EXPECT_EQ(lastStatus(), u"「two」を消去しました。"_s);
    EXPECT_FALSE(pane(kPane).isEnabled());
    EXPECT_FALSE(button(u"Btn_Delete_UpDwn"_s).isEnabled());
    EXPECT_TRUE(button(u"Btn_New_UpDwn"_s).isEnabled());
}

TEST_F(CustomizePieces, OneThatIsMissingIsNone) {
    setSetting(keys::body::kUpText, u"gone"_s);
    openTexts();
    EXPECT_EQ(box(kBox).currentIndex(), -1);
    EXPECT_EQ(pane(kPane).text(), u""_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(stored(keys::body::kUpText), u"gone"_s);
    EXPECT_TRUE(boxes().isEmpty());
}

TEST_F(CustomizePieces, OneOfTenMegabytesStaysOutOfTheBox) {
    const QByteArray big(10'000'000, 'x');
    writePiece(u"one"_s, big);
    const double before = processorSeconds();
    openTexts();
    EXPECT_LT(processorSeconds() - before, 5);
    EXPECT_FALSE(pane(kPane).isEnabled());
    EXPECT_EQ(box(kBox).currentText(), u"one"_s);
    press(u"Btn_OK"_s);
    EXPECT_EQ(piece(u"one"_s).size(), big.size());
    EXPECT_EQ(stored(keys::body::kUpText), u"one"_s);
}

/// As long as those that are shown may be, in all and in one line.
TEST_F(CustomizePieces, TheLongestOnesDoNotHangTheWindow) {
    const QByteArray line(site::kLongestLine - 1, 'x');
    for (const QByteArray& text : {line + '\n', QByteArray(99, 'x').append('\n').repeated(10'000)}) {
        writePiece(u"one"_s, text);
        open();
        double before = processorSeconds();
        category(u"上下追加テキスト"_s);
        EXPECT_LT(processorSeconds() - before, 3);
        before = processorSeconds();
        QTest::keyClick(&pane(kPane), Qt::Key_A);
        settle();
        EXPECT_LT(processorSeconds() - before, 1);
        EXPECT_TRUE(pane(kPane).text().startsWith(u"ax"_s));
        desk.answers = {u"no"_s};
        press(u"Btn_Cancel"_s);
        EXPECT_EQ(piece(u"one"_s), text);
    }
}

// ---- sets

TEST_F(CustomizePieces, ANewSetStartsAsACopyOfWhatIsShown) {
    setSetting(keys::general::kHPTitle, u"古い"_s);
    const QByteArray before = set();
    open();
    line(u"txtHPTitle"_s).setText(u"新しい"_s);
    desk.answers = {u"青"_s};
    desk.events = {};
    press(u"Btn_New"_s);
    EXPECT_EQ(told(), (QStringList{u"input: 新しいカスタマイズセットの名前を入力してください。\r\n"
                                   "(ファイル名に使用できない文字は使用しないでください。)"_s,
                                   u"message: 新しいカスタマイズセットを作成しました。"_s,
                                   u"status: 新しいカスタマイズセットを作成しました。"_s}));
    EXPECT_EQ(box(u"cmbSelectCustomize"_s).currentText(), u"青"_s);
    EXPECT_EQ(session.CustIniFile, setFile(u"青"_s));
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新しい"_s);
    EXPECT_EQ(stored(keys::body::kUpText), u"one"_s) << "the pieces come along";
    EXPECT_EQ(bytesOf(setFile(u"Customize"_s)), before);
    EXPECT_FALSE(canApply());
    desk.answers = {u"Customize"_s, u"yes"_s};
    press(u"Btn_New"_s);
    EXPECT_EQ(lastStatus(), u"既存のカスタマイズセットに上書きしました。"_s);
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新しい"_s);
    EXPECT_EQ(site::selectedCustomizeSet(session), u"Customize"_s);
}

TEST_F(CustomizePieces, DeletingASetGoesOnWithTheNextOne) {
    writeFile(setFile(u"zz"_s), "[General]\r\nHPTitle=z\r\n");
    const QStringList before = site::customizeSets(session);
    open();
    pick(u"cmbSelectCustomize"_s, before[before.size() - 2]);
    const QString name = box(u"cmbSelectCustomize"_s).currentText();
    line(u"txtHPTitle"_s).setText(u"unsaved"_s);
    desk.answers = {u"no"_s, u"yes"_s};
    desk.events = {};
    press(u"Btn_Delete"_s);
    EXPECT_EQ(site::customizeSets(session), before);
    press(u"Btn_Delete"_s);
    const QString question = u"message: カスタマイズセット「%1」を消去します。\r\nよろしいですか？"_s.arg(name);
    EXPECT_EQ(told(), (QStringList{question, u"status: 消去を中止しました。"_s, question,
                                   u"status: カスタマイズセット「%1」を消去しました。"_s.arg(name)}));
    EXPECT_EQ(box(u"cmbSelectCustomize"_s).currentText(), u"zz"_s);
    EXPECT_EQ(line(u"txtHPTitle"_s).text(), u"z"_s);
    EXPECT_EQ(core::Settings(session).text(keys::kCustomizeIni), setFile(u"zz"_s));
    EXPECT_FALSE(hasBackup());
    press(u"Btn_Cancel"_s);
    EXPECT_EQ(session.CustIniFile, setFile(u"zz"_s));
}

TEST_F(CustomizePieces, ChoosingASetWithUnsavedChangesAsks) {
    writeFile(setFile(u"zz"_s), "[General]\r\nHPTitle=z\r\n");
    open();
    line(u"txtHPTitle"_s).setText(u"新"_s);
    desk.answers = {u"yes"_s};
    pick(u"cmbSelectCustomize"_s, u"zz"_s);
    EXPECT_EQ(asked(), QStringList{kQuestion});
    EXPECT_TRUE(bytesOf(setFile(u"Customize"_s)).contains("HPTitle=\x90\x56"));
    EXPECT_EQ(line(u"txtHPTitle"_s).text(), u"z"_s);
    line(u"txtHPTitle"_s).setText(u"dropped"_s);
    desk.answers = {u"no"_s};
    pick(u"cmbSelectCustomize"_s, u"Customize"_s);
    EXPECT_EQ(bytesOf(setFile(u"zz"_s)), "[General]\r\nHPTitle=z\r\n");
    EXPECT_EQ(line(u"txtHPTitle"_s).text(), u"新"_s);
    EXPECT_FALSE(canApply());
}

TEST_F(CustomizePieces, ASetThatVanishedIsToldAndTheOldOneStays) {
    writeFile(setFile(u"zz"_s), "");
    open();
    const QString title = line(u"txtHPTitle"_s).text();
    ASSERT_TRUE(QFile::remove(setFile(u"zz"_s)));
    const int index = box(u"cmbSelectCustomize"_s).findText(u"zz"_s);
    box(u"cmbSelectCustomize"_s).setCurrentIndex(index);
    Q_EMIT box(u"cmbSelectCustomize"_s).activated(index);
    settle();
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_EQ(box(u"cmbSelectCustomize"_s).currentText(), u"Customize"_s);
    EXPECT_EQ(box(u"cmbSelectCustomize"_s).findText(u"zz"_s), -1);
    EXPECT_EQ(line(u"txtHPTitle"_s).text(), title);
    line(u"txtHPTitle"_s).setText(u"新"_s);
    press(u"Btn_OK"_s);
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
}

/// A choice that comes to nothing does not hide that somebody else has changed the set that is shown.
TEST_F(CustomizePieces, ASetThatCantBeReadOrMadeForgetsNoOtherProgram) {
    ASSERT_TRUE(QDir().mkpath(setFile(u"zz"_s)));
    writeFile(setFile(u"yy"_s), "[General]\r\n");
    open();
    line(u"txtHPTitle"_s).setText(u"新"_s);
    setSetting(keys::body::kTextColor, u"#010203"_s);
    ASSERT_TRUE(QFile::setPermissions(setFile(u"yy"_s), QFile::ReadOwner));
    desk.answers = {u"yy"_s, u"yes"_s};
    press(u"Btn_New"_s);
    EXPECT_EQ(desk.texts(u"failure"_s).size(), 1);
    EXPECT_TRUE(canApply());
    desk.events = {};
    desk.answers = {u"no"_s};
    press(u"Btn_Apply"_s);
    EXPECT_EQ(asked().size(), 1);
    EXPECT_EQ(stored(keys::body::kTextColor), u"#010203"_s);
}

/// A data folder of another time may hold the selected set.
TEST_F(CustomizePieces, ASetThatLiesElsewhereIsEditedAndStaysSelected) {
    const QString elsewhere = path(u"elsewhere.ini"_s);
    writeFile(elsewhere, "[General]\r\n");
    setSetting(keys::kCustomizeIni, elsewhere);
    session.CustIniFile = elsewhere;
    open();
    line(u"txtHPTitle"_s).setText(u"新"_s);
    press(u"Btn_OK"_s);
    EXPECT_TRUE(desk.texts(u"failure"_s).isEmpty());
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(core::Settings(session).text(keys::kCustomizeIni), elsewhere);
    EXPECT_EQ(stored(keys::general::kHPTitle), u"新"_s);
}

} // namespace
} // namespace velloria::tests
