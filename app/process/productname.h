#pragma once

#include <QString>
#include <QStringList>

// Names of output files that follow from the input's name. Names are paths with "/" between folders.

/// The name of an input's product: "<folder>/<base>_<suffix>.<extension>". The folder is the input's, or the
/// current directory where the input is not a local file.
QString productName(const QString &input, const QString &suffix, const QString &extension);

/// The product's name or, where such a file exists, "<folder>/<base>_<suffix>_<n>.<extension>" with the first
/// free number n from 2 on.
QString proposeOutputName(const QString &input, const QString &suffix, const QString &extension);

/// Whether proposeOutputName() could have returned the name, whatever its extension and number.
bool isProposedName(const QString &name, const QString &input, const QString &suffix);

/// Fits a name that the user wrote to a process whose products have the extensions: an extension of another
/// process (`knownExtensions`) is replaced by the first of them; any other name is returned as it is.
QString adaptExtension(const QString &name, const QStringList &extensions, const QStringList &knownExtensions);

/// A relative output name as a name in the input's folder; an absolute one is returned as it is, and so is any
/// name where there is no input or the input is not a local file.
QString besideInput(const QString &name, const QString &input);
