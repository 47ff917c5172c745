#pragma once

#include "app/preview/profile/ProfilePlot.h"

#include <QWidget>

class QAction;
class QLabel;
class QMenu;
class QToolButton;

/// A profile with a sentence about its far end, a menu that saves it, and a mark that follows the mouse. Meant
/// for a place below the map; it is readable from a height of 140 pixels on.
class ProfileView : public QWidget
{
    Q_OBJECT

public:
    explicit ProfileView(QWidget *parent = nullptr);

    /// The DEM that the profiles belong to: its path, for the names of files, and its vertical unit for display
    /// (DemGround::elevationUnit(), may be empty). Does not change the profile that is shown.
    void setDem(const QString &path, const QString &elevationUnit);

    /// The colours of seen and hidden ground.
    void setColors(const ProfileColors &colors);

    /// Shows a profile; one without samples shows a hint. Removes the mark.
    void setProfile(const Profile &profile);
    const Profile &profile() const { return m_profile; }

    /// Marks the place at a distance in metres, as if the mouse were there; nothing: no mark. Emits no signal.
    void setCursor(const std::optional<double> &distance);

signals:
    /// The mouse is over the place at a distance in metres; sampleAt() leads to its coordinates.
    void hovered(double distance);
    /// The mouse left the profile, or there is no profile under it any more.
    void left();
    /// The user does not want to see the profile any more. The view stays as it is.
    void closeRequested();

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void saveCsv();
    void savePicture();
    void confirm(const QString &file);
    void retranslate();
    void showVerdict();
    void showMark();

    Profile m_profile;
    QString m_dem;
    QString m_unit;
    ProfileColors m_colors;
    std::optional<double> m_cursor;
    QLabel *m_pVerdict; ///< child of this widget, like all of these
    QToolButton *m_pTBSave;
    QMenu *m_pSaveMenu;
    QAction *m_pCsv;
    QAction *m_pPicture;
    QToolButton *m_pTBClose;
    ProfilePlot *m_pPlot;
};
