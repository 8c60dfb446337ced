#include "blog/template_check.h"

#include "blog/good_template.h"
#include "platform/directory.h"

namespace velloria::tests {
namespace {

TEST_F(TemplateCheck, OfAGoodTemplateFindsNothing) {
    EXPECT_EQ(told(with({})), QStringList());
    EXPECT_EQ(told(of(textWith({}).replace("\r\n", "\n").replace("FORM_POST", "form_post"))), QStringList())
        << "keys have no case";
    EXPECT_EQ(told(of("; a comment\r\n\r\n" + textWith({}))), QStringList());
}

TEST_F(TemplateCheck, OfAFileThatIsNoTextGoesNoFurther) {
    for (const auto& [bytes, part] : std::initializer_list<std::pair<QByteArray, const char*>>{
             {"", "ファイルが空です。"},
             {"\r\n  \r\n", "ファイルが空です。"},
             {QByteArray(1'000'001, 'x'), "大きすぎます"},
             {QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), "テキストではありません"},
             {QByteArray("\xff\xfe[\0S\0", 6), "テキストではありません"},
             {"Hello\r\n", "キーがひとつもありません"},
             {"[Simple]\r\n; VALUE_Title=title\r\n", "キーがひとつもありません"}}) {
        const QStringList found = told(of(bytes));
        ASSERT_EQ(found.size(), 1) << part;
        EXPECT_TRUE(found[0].startsWith(u"error = "_s) && found[0].contains(QString::fromUtf8(part)))
            << found[0].toStdString();
    }
    EXPECT_EQ(told(of(textWith({}) + QByteArray(1'000'000 - textWith({}).size(), '\n'))), QStringList())
        << "the largest one";
}

TEST_F(TemplateCheck, KnowsTheCharactersThatTheProgramCannotRead) {
    const QString text = platform::fromCodePage(textWith({}));
    EXPECT_TRUE(told(of(text.toUtf8()))[0].contains(u"UTF-8"_s));
    EXPECT_TRUE(told(of("\xEF\xBB\xBF" + text.toUtf8()))[0].contains(u"UTF-8"_s));
    const QStringList found = told(of(textWith({{u"CheckObject"_s, u"#"_s}}).replace('#', "\x81\x20")));
    ASSERT_EQ(found.size(), 1);
    EXPECT_TRUE(found[0].startsWith(u"error = 26行目: "_s)) << found[0].toStdString();
    EXPECT_EQ(told(with({{u"CheckObject"_s, u"é😀ﾂ｡ゾ"_s}})), QStringList()) << "references and half-width kana";
}

/// Templates that stand for every kind of page: those with a fault are faulty on purpose.
TEST_F(TemplateCheck, FindsInTheTemplatesOfTheFakeBlogWhatTheyExerciseAndNoMore) {
    const QHash<QString, QStringList> expected{
        {u"t06b"_s, {u"hint VALUE_AcceptComment_No"_s, u"hint VALUE_AcceptPing_No"_s}},
        {u"t06c"_s, {u"error Type_AcceptComment"_s, u"error Type_AcceptPing"_s}},
        {u"t06d"_s, {u"hint RADIO_VALUE_UnderWrite_YES"_s}},
        {u"t06e"_s, {u"hint RADIO_VALUE_AcceptPing_YES"_s, u"hint RADIO_VALUE_AcceptPing_No"_s}},
        {u"t06g"_s, {u"error Type_AcceptPing"_s}},
        {u"t06h"_s, {u"error VALUE_UnderWrite_Yes"_s}},
        {u"t06i"_s, {u"error VALUE_AcceptComment_Yes"_s}},
        {u"t09"_s, {u"error PostURL"_s}},
        {u"t10b"_s, {u"error NextURL"_s}},
        {u"t11c"_s, {u"error AutoLoginURL"_s}},
        {u"t13c"_s, {u"hint CheckObject"_s}},
        {u"t15"_s, {u"hint Blog"_s}},
        {u"t16"_s, {u"hint Blog"_s}},
        {u"t19a"_s, {u"hint HTML2TXT"_s}},
        {u"t19b"_s, {u"hint HTML2TXT"_s}},
        {u"t20"_s, {u"hint HTML2TXT"_s}},
    };
    const QString folder = QStringLiteral(VELLORIA_TEST_DATA "/blog/");
    const QStringList files = platform::listFolder(folder, u"*.blg"_s);
    EXPECT_GT(files.size(), 40);
    for (const QString& file : files) {
        QStringList found;
        for (const QString& line : told(of(bytesOf(folder + file).replace("%SITE%", "http://127.0.0.1:8090"))))
            found += line.section(u'=', 0, 0);
        EXPECT_EQ(found, expected.value(file.chopped(4))) << file.toStdString();
    }
}

TEST_F(TemplateCheck, FindsLinesThatAreNotRead) {
    const QByteArray good = textWith({});
    const auto first = [&](const QByteArray& bytes) {
        const QStringList found = told(of(bytes));
        return found.size() == 1 ? found[0] : found.join(u'\n');
    };
    EXPECT_EQ(first(good + "VALUE_Titel=x\r\n"),
              u"error VALUE_Titel=x 27行目: 知らないキーです。「VALUE_Title」の書きまちがいではありませんか。"_s);
    EXPECT_EQ(first(good + "RADIO_VALUE_UnderWrite_Yse=\r\n").section(u'。', 1),
              u"「RADIO_VALUE_UnderWrite_YES」の書きまちがいではありませんか。"_s);
    EXPECT_EQ(first(good + "Author=me\r\n"), u"hint Author=me 27行目: 知らないキーです。使われません。"_s);
    EXPECT_EQ(first(good + "value_title=title\r\n"),
              u"hint VALUE_Title=title 27行目: 同じキーが19行目にあり、そちらが使われます。"_s);
    EXPECT_EQ(first(good + "VALUE_Title=subject\r\n"),
              u"error VALUE_Title=subject 27行目: 同じキーが19行目にあり、そちらが使われます。"_s);
    EXPECT_EQ(first(good + "Blog=x\r\n"),
              u"error Blog=x 27行目: [General] に書くキーです。ここにあるものは読まれません。"_s);
    EXPECT_EQ(first("Events=TRUE\r\n" + good),
              u"error Events=TRUE 1行目: [Simple] に書くキーです。ここにあるものは読まれません。"_s);
    EXPECT_EQ(first(good + "[Other]\r\nVALUE=1\r\n"),
              u"hint =[Other] 27行目: 知らないセクションです。使われるのは [General] と [Simple] だけです。"_s);
    EXPECT_EQ(first(good + "[simple]\r\nEvents=TRUE\r\n"),
              u"error =[simple] 27行目: 同じ名前のセクションがもうあります。このセクションは読まれません。"_s);
    EXPECT_EQ(first(good + "VALUE_Title subject\r\n").left(8), u"hint =VA"_s);
}

TEST_F(TemplateCheck, FindsAValueThatDoesNotFit) {
    const QString address = u"http://a.example/"_s;
    EXPECT_EQ(told(with({{u"PostURL"_s, address + QString(255 - address.size(), u'x')}})), QStringList());
    const QStringList found = told(with({{u"PostURL"_s, address + QString(256 - address.size(), u'x')}}));
    ASSERT_EQ(found.size(), 1);
    EXPECT_TRUE(found[0].startsWith(u"error PostURL=http"_s) && found[0].contains(u"長すぎます"_s));
    EXPECT_EQ(told(with({{u"CheckObject"_s, QString(127, u'あ')}})), QStringList());
    EXPECT_EQ(told(with({{u"CheckObject"_s, QString(128, u'あ')}})).size(), 1);
    EXPECT_EQ(told(with({{u"CheckObject"_s, u"\"quoted\""_s}})), QStringList());
}

TEST_F(TemplateCheck, FindsARemarkBehindAValue) {
    for (const QString& value : {u"subject ; the title"_s, u"subject\t;"_s})
        EXPECT_EQ(told(with({{u"VALUE_Title"_s, value}})),
                  QStringList{u"hint VALUE_Title="_s + value +
                              u" 26行目: 値の後ろに説明は書けません。「;」から後ろも値になります。"_s});
    EXPECT_EQ(told(with({{u"PostURL"_s, u"http://a.example/p;a=1"_s}})), QStringList());
}

TEST_F(TemplateCheck, TellsAHundredLinesAndNoMore) {
    QByteArray many = textWith({});
    for (int i = 0; i < 100'000; ++i)
        many += "key=1\r\n";
    const QStringList found = told(of(many));
    EXPECT_EQ(found.size(), 101);
    EXPECT_TRUE(found.back().contains(u"ほかの行にも"_s));
}

TEST_F(TemplateCheck, WantsANameThatTheUsersDataCanBear) {
    for (const QString& name :
         {u"blog.blg"_s, u"blog.BLG"_s, u"blog.ini"_s, u"a.b.blg"_s, u"はてな.blg"_s, u"[a.blg"_s, u""_s}) {
        surroundings.fileName = name;
        EXPECT_EQ(told(with({})), QStringList()) << name.toStdString();
    }
    for (const QString& name : {u"a]b.blg"_s, u" a.blg"_s, u"a .blg"_s, u".blg"_s}) {
        surroundings.fileName = name;
        EXPECT_EQ(told(with({})), QStringList{u"error =%1 この名前では、ログインのIDやパスワードを覚えられません。"
                                              u"「]」と、前後の空白のない名前にしてください。"_s.arg(name)});
    }
    for (const QString& name : {u"blog.txt"_s, u"blog"_s, u"blog.blg.bak"_s}) {
        surroundings.fileName = name;
        ASSERT_FALSE(told(with({})).isEmpty()) << name.toStdString();
        EXPECT_TRUE(told(with({}))[0].startsWith(u"hint =%1 "_s.arg(name)));
    }
}

} // namespace
} // namespace velloria::tests
