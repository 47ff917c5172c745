#pragma once

#include "app/preview/previewqueue.h"
#include "app/process/productsteps.h"
#include "app/process/tools.h"
#include "dataset/workfolder.h"

#include <QElapsedTimer>
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
    QString path;              ///< empty: there is no DEM
    QString state;             ///< changes when the file is written again (DemInfo::state)
    QSize size;                ///< columns and rows
    bool georeferenced = true; ///< the DEM has coordinates of its own
    int band = 1;              ///< counted from 1
};

/// Makes the files that the previews show: a reduced copy of the DEM, and the product of that copy, made by the
/// product's own tool. The files are in the work folder until the next ones replace them.
///
/// The script runner is shared with the real runs. While no step of a preview runs, the runner's signals are
/// ignored; before a real run hold() must be called.
class Previews : public QObject
{
    Q_OBJECT

public:
    /// Returns the request to compute on a reduced copy; empty where nothing can be computed. Called as a run
    /// begins. Input and output of the request are replaced, its output options ignored.
    using RequestMaker = std::function<std::optional<ProcessingRequest>(const QString &copy)>;

    /// `runner` and `workFolder` outlive this object.
    Previews(QuvoScriptRunner &runner, const ToolPaths &tools, WorkFolder &workFolder,
             RequestMaker makeRequest);
    ~Previews() override;

    /// Whether the previews are visible. Nothing runs while they are not.
    void setShown(bool shown);

    /// Sets the DEM, and the whole of it as the part to compute on.
    void setDem(const PreviewDem &dem);

    /// The part of the DEM to compute on, in cells. Where a reduced copy of it exists, reduced() follows from
    /// inside this call.
    void setPart(const QRect &part);

    /// Makes the reduced copies and the product anew, though nothing has changed.
    void renew();

    /// The options changed. The next computation begins at once, or as soon as the running one has ended, and
    /// only if the options are complete. A running one that takes longer than a second is stopped.
    void update(bool complete);

    /// Another process is shown: a running computation is stopped at once.
    void replace(bool complete);

    /// Stops the running step and prevents others from starting until release().
    void hold();
    void release();

    PreviewStep running() const { return m_queue.running(); }

    /// Path of the reduced copy of part(); empty while there is none.
    QString copy() const { return m_queue.hasReduction() ? m_copy : QString(); }
    QRect part() const { return m_part; }

    /// Path of the reduced copy of the whole DEM, which may be shown or not; empty while there is none.
    QString wholeCopy() const;
    const PreviewDem &dem() const { return m_dem; }

    /// How long the tool ran for the product, in seconds.
    double computingSeconds() const { return m_computingSeconds; }

    /// Path of the product, valid from computed() to the next change.
    QString product() const { return m_product; }

    /// The request that the product was made with. The files of its toolInput exist until the slots of
    /// computed() have ended.
    const ProcessingRequest &productRequest() const { return m_request; }

    /// Whether product() is that of options which have changed since.
    bool isProductOutdated() const { return m_isOutdated; }

    /// Whether the product's rows run from the north and its columns from the west, unlike those of the DEM.
    bool isProductTurned() const { return m_isTurned; }

signals:
    void reductionStarted();
    void reducingProgress(int percent);
    void reduced();
    /// `reason`: what the tool wrote on its standard error, or why it could not be started.
    void reductionFailed(const QString &reason);
    void computationStarted();
    void computingProgress(int percent);
    void computed();
    void computationFailed(const QString &reason);
    /// A change stopped the running step; none of its other signals follows.
    void interrupted();

private:
    void scheduleNext(int pause = 0);
    void expire();
    void stopStaleStep();
    void runNext();
    void begin(PreviewStep step, const ProductSteps &steps, const QuvoOutputFile &output);
    void reduce();
    void compute();
    bool isWhole() const { return m_part.size() == m_dem.size; }
    void endStep(bool succeeded);
    void removeSideFiles();
    void onProgress(int percent);
    void onDone();
    void onError(const QString &toolText);

    QuvoScriptRunner &m_runner;
    ToolPaths m_tools;
    WorkFolder &m_workFolder;
    RequestMaker m_makeRequest;
    PreviewQueue m_queue;
    QTimer m_pause;    ///< waits for further changes before the next step begins
    QTimer m_patience; ///< runs while a computation may end although its options have changed
    PreviewDem m_dem;
    std::optional<bool> m_hasAverages; ///< hasAveragedOverviews() of the DEM, once it was needed
    QRect m_part;
    QString m_copy;        ///< path of the reduced copy in use: m_wholeCopy or m_partCopy
    QString m_wholeCopy;   ///< path of the copy of the whole DEM, which is kept while parts are shown
    QString m_wholeSource; ///< sourceName() of m_wholeCopy; empty: that copy does not exist
    QString m_partCopy;    ///< path of the copy of a part
    QString m_product;     ///< path of the product in use: m_rasterProduct or m_vectorProduct
    QString m_rasterProduct;
    ProcessingRequest m_request;
    QElapsedTimer m_computing;
    double m_computingSeconds = 0.0;
    bool m_isOutdated = false;
    bool m_isTurned = false; ///< isProductTurned() of the product in use
    QString m_vectorProduct;
    // Folders of m_workFolder that hold the input files of the running step: the first, and the one behind the
    // last.
    int m_firstSideFolder = 0;
    int m_endOfSideFolders = 0;
};
