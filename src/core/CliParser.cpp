#include "CliParser.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("CliParser", text); }

QString shown(const QByteArray &arg) { return QString::fromLocal8Bit(arg); }

} // namespace

CliParser::CliParser(CliCommand command) : m_command(std::move(command)) {}

bool CliParser::fail(const QString &message)
{
    m_error = message;
    return false;
}

bool CliParser::parse(const QByteArrayList &args)
{
    m_values.clear();
    m_positional.clear();
    m_error.clear();
    m_help = false;

    qsizetype allowed = 0; // positional arguments the table has room for; -1: no limit
    for (const CliArgument &a : m_command.arguments)
        allowed = (allowed < 0 || a.repeatable) ? -1 : allowed + 1;

    bool options = true;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QByteArray &arg = args[i];
        if (options && arg == "--") {
            options = false;
            continue;
        }
        if (!options || !arg.startsWith('-') || arg.size() == 1) {
            if (allowed == 0)
                return fail(tr("takes no arguments, not '%1'").arg(shown(arg)));
            if (allowed > 0 && m_positional.size() >= allowed)
                return fail(tr("one %1 at a time, please: '%2' is one too many")
                                .arg(QString::fromLatin1(m_command.arguments.last().name), shown(arg)));
            const CliArgument &spec =
                m_command.arguments[std::min(m_positional.size(), m_command.arguments.size() - 1)];
            if (spec.kind == CliArgument::Kind::choice && !spec.choices.contains(shown(arg)))
                return fail(
                    tr("%1 is one of %2, not '%3'")
                        .arg(QString::fromLatin1(spec.name), spec.choices.join(QLatin1String(", ")), shown(arg)));
            m_positional.append(arg);
            continue;
        }
        QByteArray spelling = arg;
        QByteArray value;
        bool inline_ = false;
        if (const qsizetype eq = arg.indexOf('='); eq > 0 && !m_command.option(arg)) {
            spelling = arg.left(eq);
            value = arg.mid(eq + 1);
            inline_ = true;
        }
        const CliOption *option = m_command.option(spelling);
        if (!option)
            return fail(tr("unknown option '%1'").arg(shown(spelling)));
        if (qstrcmp(option->name, "--help") == 0) {
            m_help = true;
            return true;
        }
        if (!option->takesValue()) {
            if (inline_)
                return fail(tr("%1 takes no value").arg(shown(spelling)));
            m_values[option->name].append(QByteArray(""));
            continue;
        }
        if (!inline_) {
            if (i + 1 >= args.size())
                return fail(tr("%1 needs %2").arg(shown(spelling), QString::fromLatin1(option->value.name)));
            value = args[++i];
        }
        if (option->value.kind == CliArgument::Kind::choice && !option->value.choices.contains(shown(value)))
            return fail(tr("%1 takes one of %2, not '%3'")
                            .arg(shown(spelling), option->value.choices.join(QLatin1String(", ")), shown(value)));
        m_values[option->name].append(value);
    }
    return true;
}

const CliOption &CliParser::known(QByteArrayView name) const
{
    const CliOption *option = m_command.option(name);
    if (!option || name != option->name)
        qFatal("CliParser: the command line of '%s' has no option %s", m_command.name ? m_command.name : "",
               name.toByteArray().constData());
    return *option;
}

bool CliParser::isSet(QByteArrayView name) const { return m_values.contains(known(name).name); }

QByteArray CliParser::value(QByteArrayView name) const
{
    const auto found = m_values.constFind(known(name).name);
    return found == m_values.cend() ? QByteArray() : found->last();
}

QByteArrayList CliParser::values(QByteArrayView name) const { return m_values.value(known(name).name); }
