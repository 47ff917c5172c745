#pragma once

#include "app/preview/previewqueue.h"
#include "app/process/commandline.h"
#include "app/process/tools.h"
#include "dataset/workfolder.h"

#include <QObject>
#include <QRect>
#include <QSize>
#include <QTimer>

#include <functional>
#include <optional>

class QuvoScriptRunner;

/// The DEM of the previews.
struct PreviewDem
{
    QString path;  ///< empty: there is none
    QString state; ///< tells a file that was written anew from the one before
    QSize size;    ///< cells
    bool georeferenced = true;
};

/// Makes what the previews show: a reduced copy of the DEM, and the product of that copy, each by the tool that
/// makes the real one. The files lie in the work folder and stay until the next ones take their place.
///
/// It shares the script runner with the real runs: while none of its own steps runs, the runner's signals
/// concern somebody else, and before a real run it is held.
class Previews : public QObject
{
    Q_OBJECT

public:
    /// What is to be computed on a reduced copy, fetched as a run begins; none where there is nothing to show.
    /// The input is the copy; the output, its format and what belongs to it are not used.
    using Fetch = std::function<std::optional<ProcessingRequest>(const QString &copy)>;

    /// Runner and work folder outlive it.
    Previews(QuvoScriptRunner &runner, const ToolPaths &tools, WorkFolder &workFolder, Fetch fetch);
    ~Previews() override;

    /// Nothing runs while the previews cannot be seen.
    void setShown(bool shown);

    void setDem(const PreviewDem &dem);

    /// The part of the DEM that is computed on, in cells. Where a copy of it is at hand, reduced() follows from
    /// inside this call.
    void setPart(const QRect &part);

    /// The product is another one. A run for the one before ends at once; the next begins when no change
    /// followed for a while, and only if the options are complete.
    void update(bool complete);

    /// Ends what runs, and keeps everything from starting.
    void hold();
    void release();

    /// Whether a failure has switched the previews off.
    bool hasFailed() const { return m_queue.hasFailed(); }

    PreviewStep running() const { return m_queue.running(); }

    /// The reduced copy of part(); empty while there is none.
    QString copy() const { return m_queue.hasReduction() ? m_copy : QString(); }
    QRect part() const { return m_part; }

    /// The file of the product, valid from computed() to the next change.
    QString product() const { return m_product; }

signals:
    void reductionStarted();
    void reducingProgress(int percent);
    void reduced();
    void reductionFailed(const QString &toolText);
    void computationStarted();
    void computingProgress(int percent);
    void computed();
    void computationFailed(const QString &toolText);
    /// A step was ended before its time; none of the other signals follows.
    void interrupted();

private:
    void changed();
    void endStale();
    void runNext();
    void begin(PreviewStep step, const QString &command, const QuvoOutputFile &output);
    void reduce();
    void compute();
    bool isWhole() const { return m_part.size() == m_dem.size; }
    void end(bool good);
    void onProgress(int percent);
    void onDone();
    void onError(const QString &toolText);

    QuvoScriptRunner &m_runner;
    ToolPaths m_tools;
    WorkFolder &m_workFolder;
    Fetch m_fetch;
    PreviewQueue m_queue;
    QTimer m_pause;
    PreviewDem m_dem;
    QRect m_part;
    QString m_copy;
    QString m_wholeCopy;   ///< the copy of the whole DEM, kept while parts of it are looked at
    QString m_wholeSource; ///< what it is a copy of; empty: it is not there yet
    QString m_partCopy;
    QString m_product;
    QString m_rasterProduct;
    QString m_vectorProduct;
    int m_firstSideFolder = 0; ///< folders of the work folder that the running product's files lie in
    int m_endOfSideFolders = 0;
};
