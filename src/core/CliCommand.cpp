#include "CliCommand.h"

const CliOption *CliCommand::option(QByteArrayView spelling) const
{
    static const CliOption help = CliOption::helpOption();
    if (spelling == help.name || spelling == help.shortName)
        return &help;
    for (const CliOption &o : options)
        if (spelling == o.name || (o.shortName && spelling == o.shortName))
            return &o;
    return nullptr;
}

QString CliCommand::usage(const QString &program) const
{
    QStringList words{program};
    if (name)
        words << QString::fromLatin1(name);
    // Arguments first, as one reads "sorvel scan PATH [options]".
    for (const CliArgument &a : arguments)
        words << a.usage();
    for (const CliOption &o : options)
        if (!o.hidden)
            words << o.usage();
    return words.join(QLatin1Char(' '));
}
