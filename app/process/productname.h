#pragma once

#include <QString>
#include <QStringList>

// Names of output files that follow from the input's name. Names are paths with "/" between folders.

/// The name of an input's product: "<folder>/<base>_<suffix>.<extension>". The folder is the input's, or the
/// current directory where the input is not a local file.
QString productName(const QString &input, const QString &suffix, const QString &extension);

/// productName() or, where such a file exists, "<folder>/<base>_<suffix>_<n>.<extension>" with the lowest
/// number from 2 on that is free.
QString proposeOutputName(const QString &input, const QString &suffix, const QString &extension);

/// Whether proposeOutputName() could have returned the name, whatever its extension and number.
bool isProposedName(const QString &name, const QString &input, const QString &suffix);

/// The files without those that are named as a product, of any process and format, of another one of them or of
/// its mosaic.
QStringList withoutProducts(const QStringList &files);

/// Replaces an extension that is one of `knownExtensions`, but not of `extensions`, by the first of
/// `extensions`. Any other name is returned as it is. Used where process or format change under a name that the
/// user wrote.
QString adaptExtension(const QString &name, const QStringList &extensions, const QStringList &knownExtensions);

/// Makes a relative output name a path in the input's folder. An absolute name is returned as it is; so is any
/// name where the input is empty or not a local file.
QString besideInput(const QString &name, const QString &input);
