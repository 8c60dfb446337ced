#include "cli/command_line.h"

#include "core/day_key.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velloria::cli {
namespace {

struct GlobalSpec {
    OptionSpec spec;
    QString help;
};

const std::vector<GlobalSpec>& globalOptions() {
    static const std::vector<GlobalSpec> specs{
        {{u"--home"_s, u"FOLDER"_s}, u"プログラムフォルダ (既定: 実行ファイルのフォルダ)"_s},
        {{u"--user"_s, u"ID"_s}, u"このユーザーでログインする (パスワードは VELLORIA_PASSWORD か端末から)"_s},
        {{u"--now"_s, u"\"yyyy/mm/dd hh:nn:ss\""_s}, u"現在の日時をこの値に固定する"_s},
        {{u"--day"_s, u"yyyy/mm/dd"_s}, u"作業する日 (既定: 今日)"_s},
        {{u"--events"_s, {}}, u"画面に出るものを1件1行のJSONで標準エラー出力に書く"_s},
        {{u"--answers"_s, u"FILE"_s}, u"質問への答え (JSONの配列)"_s},
        {{u"--yes"_s, {}}, u"「はい」か「いいえ」の質問にはすべて「はい」と答える"_s},
        {{u"--json"_s, {}}, u"結果をJSONで出力する"_s},
        {{u"--version"_s, {}}, u"バージョンを表示する"_s},
        {{u"--help"_s, {}}, u"この説明を表示する (コマンドの後にも書ける)"_s},
    };
    return specs;
}

const OptionSpec* findOption(const QString& name, const Command* command) {
    for (const GlobalSpec& global : globalOptions()) {
        if (global.spec.name == name)
            return &global.spec;
    }
    if (command) {
        for (const OptionSpec& option : command->options) {
            if (option.name == name)
                return &option;
        }
    }
    return nullptr;
}

/// Throws UsageError for a value that its placeholder does not allow, so that wrong usage starts nothing.
void checkValue(const QString& placeholder, const QString& value) {
    const bool isDay = placeholder == u"yyyy/mm/dd"_s || placeholder == u"DAY"_s;
    if (isDay && !core::isDayKey(value))
        throw UsageError(u"「%1」という日はありません (yyyy/mm/dd で指定してください)。"_s.arg(value));
    if (placeholder == u"yyyy/mm"_s && !core::isMonthKey(value))
        throw UsageError(u"「%1」という月はありません (yyyy/mm で指定してください)。"_s.arg(value));
    if (placeholder == u"NUMBER"_s || placeholder == u"[NUMBER]"_s)
        numberArgument(value);
    // A log takes its file name from both and must not leave its folder.
    if ((placeholder == u"YEAR"_s || placeholder == u"MONTH"_s) && value.contains(u'/'))
        throw UsageError(u"「%1」は年や月ではありません (2004 1 のように指定してください)。"_s.arg(value));
}

QString programWithTopic(const QString& topic) {
    return topic.isEmpty() ? u"velloria-cli --help"_s : u"velloria-cli %1 --help"_s.arg(topic);
}

class Parser {
public:
    explicit Parser(QStringList words)
        : m_words(std::move(words)) {}

    CommandLine parse() {
        while (!m_words.isEmpty()) {
            const QString word = m_words.takeFirst();
            if (word == u"--"_s && !m_optionsEnded)
                m_optionsEnded = true;
            else if (word.startsWith(u"--"_s) && !m_optionsEnded)
                takeOption(word);
            else if (!m_line.command)
                takeCommandWord(word);
            else
                m_line.arguments += word;
        }
        m_line.helpTopic = m_line.command ? m_line.command->name : m_group;
        if (m_line.wantsHelp || m_line.wantsVersion)
            return m_line;
        checkCommand();
        return m_line;
    }

private:
    void takeOption(const QString& word) {
        const QString name = word.section(u'=', 0, 0);
        const OptionSpec* option = findOption(name, m_line.command);
        if (!option)
            throw UsageError(
                u"不明なオプションです: %1 (%2 を参照してください)"_s.arg(name, programWithTopic(topic())));
        QString value;
        if (!option->value.isEmpty()) {
            if (word.contains(u'='))
                value = word.section(u'=', 1);
            else if (!m_words.isEmpty())
                value = m_words.takeFirst();
            else
                throw UsageError(u"オプション %1 には値 %2 が必要です。"_s.arg(name, option->value));
        } else if (word.contains(u'=')) {
            throw UsageError(u"オプション %1 は値を取りません。"_s.arg(name));
        }
        checkValue(option->value, value);
        setOption(name, value);
    }

    void setOption(const QString& name, const QString& value) {
        GlobalOptions& global = m_line.global;
        if (name == u"--home"_s)
            global.home = filled(name, value);
        else if (name == u"--user"_s)
            global.user = value.isNull() ? u""_s : value;
        else if (name == u"--now"_s)
            global.now = filled(name, value);
        else if (name == u"--day"_s)
            global.day = value;
        else if (name == u"--answers"_s)
            global.answersFile = filled(name, value);
        else if (name == u"--events"_s)
            global.showsEvents = true;
        else if (name == u"--yes"_s)
            global.answersYes = true;
        else if (name == u"--json"_s)
            global.isJson = true;
        else if (name == u"--version"_s)
            m_line.wantsVersion = true;
        else if (name == u"--help"_s)
            m_line.wantsHelp = true;
        else
            m_line.options[name] += value;
    }

    /// An empty value is a script's unset variable: the default that it would stand for is somebody else's diary.
    static const QString& filled(const QString& name, const QString& value) {
        if (value.isEmpty())
            throw UsageError(u"オプション %1 の値が空です。値を指定するか、オプションを外してください。"_s.arg(name));
        return value;
    }

    void takeCommandWord(const QString& word) {
        const QString name = m_group.isEmpty() ? word : m_group + u' ' + word;
        const auto& commands = allCommands();
        const auto exact =
            std::find_if(commands.begin(), commands.end(), [&](const Command& c) { return c.name == name; });
        if (exact != commands.end()) {
            m_line.command = &*exact;
            return;
        }
        const bool isGroup = std::any_of(commands.begin(), commands.end(),
                                         [&](const Command& c) { return c.name.startsWith(name + u' '); });
        if (!isGroup)
            throw UsageError(
                u"不明なコマンドです: 「%1」 (%2 を参照してください)"_s.arg(name, programWithTopic(m_group)));
        m_group = name;
    }

    void checkCommand() const {
        const Command* command = m_line.command;
        if (!command)
            throw UsageError(u"コマンドを指定してください (%1 を参照してください)。"_s.arg(programWithTopic(m_group)));
        const QString usage = u"velloria-cli %1 %2"_s.arg(command->name, command->arguments).trimmed();
        if (m_line.arguments.size() < command->fewest)
            throw UsageError(u"引数が足りません。使い方: %1"_s.arg(usage));
        if (m_line.arguments.size() > command->most)
            throw UsageError(u"余分な引数です: %1。使い方: %2"_s.arg(m_line.arguments[command->most], usage));
        for (const OptionSpec& option : command->options) {
            if (option.isNeeded && !m_line.options.contains(option.name))
                throw UsageError(u"オプション %1 が必要です。使い方: %2"_s.arg(option.name, usage));
        }
        const QStringList placeholders = command->arguments.split(u' ');
        for (qsizetype i = 0; i < m_line.arguments.size(); ++i) {
            // The number of a file depends on its day: the command looks at both.
            const bool isLeftToCommand =
                (i > 0 && placeholders[i - 1] == u"DAY|ALL"_s) || (command->check && placeholders[i] == u"DAY"_s);
            if (!isLeftToCommand)
                checkValue(placeholders[i], m_line.arguments[i]);
        }
    }

    QString topic() const { return m_line.command ? m_line.command->name : m_group; }

    QStringList m_words;
    CommandLine m_line;
    QString m_group;
    bool m_optionsEnded = false;
};

} // namespace

CommandLine parseCommandLine(const QStringList& words) {
    return Parser(words).parse();
}

QString helpText(const QString& topic) {
    QString text = u"使い方: velloria-cli [全体のオプション] コマンド [引数]\n\n"_s;
    for (const Command& command : allCommands()) {
        if (topic.isEmpty() || command.name == topic || command.name.startsWith(topic + u' '))
            text += u"  %1\n      %2\n"_s.arg(u"%1 %2"_s.arg(command.name, command.arguments).trimmed(), command.help);
    }
    text += u"\n全体のオプション:\n"_s;
    for (const GlobalSpec& global : globalOptions())
        text += u"  %1\n      %2\n"_s.arg(u"%1 %2"_s.arg(global.spec.name, global.spec.value).trimmed(), global.help);
    return text + u"\n終了コード: 0 完了、1 中止または失敗、2 使い方の誤り\n"_s;
}

} // namespace velloria::cli
