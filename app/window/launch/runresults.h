#pragma once

#include "app/preview/ProductReading.h"
#include "app/recipe/recipe.h"
#include "app/run/ProductRun.h"

#include <QString>

#include <optional>

// The contents of the result window.

/// What the result window shows of a run that has ended.
struct ProcessResult
{
    QString title;
    QString picture;                     ///< resource path of the picture
    QString text;                        ///< sentences for the user: the outcome, problems and warnings
    QString file;                        ///< path of the product; empty when there is none
    QString command;                     ///< the tool's whole command line
    std::optional<ProductSource> source; ///< what the product was made of
    QString shellCommand;                ///< command for a shell that makes the same product
    std::optional<int> exitCode;         ///< of the tool; empty when it was stopped or never started
    QString toolText;                    ///< what the tool wrote on its standard error
};

// The contents for a run that has just emitted finished(), aborted() or failed(). The caller adds the shell
// command.

/// What a recipe's product is made of.
ProductSource productSource(const Recipe &recipe);

ProcessResult finishedResult(const ProductRun &run);
ProcessResult abortedResult(const ProductRun &run);
ProcessResult failedResult(const ProductRun &run);

/// The line of a failed tool's standard error that says why: its first error without "ERROR 1:", else its first
/// line; empty where it wrote nothing.
QString toolReason(const QString &toolText);

/// Text of the window's details: command, exit code and the tool's text.
QString resultDetails(const ProcessResult &result);
