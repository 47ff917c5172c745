#pragma once

#include "messages/dictionary/dictionarysource.h"
#include "tests/support/files.h"
#include "tests/support/programs.h"

// For tests that link dictionary_compiler_core.

/// Compiles a source without faults and writes the dictionary: `path` and its index.
inline void writeDictionary(const QString &path, const char *source)
{
    const CompiledDictionary compiled = compileDictionary(parseDictionary(source));
    writeFile(path, QByteArray::fromStdString(compiled.data));
    writeFile(path + QStringLiteral(".idx"), QByteArray::fromStdString(compiled.index));
}

/// Runs tests/support/dico_child.cpp with no other environment variables than LC_ALL and `variables`
/// ("NAME=value"). Returns its standard output followed by its exit code.
inline QString runDicoChild(const QStringList &variables, const QStringList &arguments)
{
    QProcessEnvironment environment;
    environment.insert("LC_ALL", "C"); // QProcess would replace an empty environment by that of this process
    for (const QString &variable : variables)
        environment.insert(variable.section('=', 0, 0), variable.section('=', 1));
    const Ended ended = runProgram(QStringLiteral(QUVO_DICO_CHILD), arguments, environment);
    return ended.out + QString::number(ended.code);
}
