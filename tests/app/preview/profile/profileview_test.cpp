#include "app/preview/profile/ProfileView.h"
#include "app/preview/profile/profiletexts.h"
#include "dataset/QuvoFilerDialog.h"
#include "dataset/gdalmessages.h"
#include "messages/Prompt.h"
#include "messages/QuvoLanguageManager.h"
#include "tests/support/files.h"
#include "tests/support/rasters.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

class ProfileViewTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void texts();
    void mouse();
    void drawing();
    void files();

private:
    static void setLanguage(const char *language)
    {
        QuvoLanguageManager::getInstance()->defaultSetup(QStringLiteral(QUVO_TREE "/MESSAGES"), language, {});
        QApplication::processEvents();
    }

    QTemporaryDir m_folder;
    Profile m_hidden; ///< a ridge of 9 m at 20 m of 50 m
    Profile m_seen;
};

namespace
{

constexpr QRgb visibleColor = qRgb(0, 158, 115);
constexpr QRgb hiddenColor = qRgb(213, 94, 0);

QToolButton *button(const ProfileView &view, const QString &text)
{
    for (QToolButton *one : view.findChildren<QToolButton *>()) {
        if (one->text() == text)
            return one;
    }
    return nullptr;
}

/// Chooses an entry of the menu that saves: 0 CSV, 1 picture.
void save(const ProfileView &view, int entry)
{
    view.findChild<QMenu *>()->actions().at(entry)->trigger();
}

/// Number of pixels that have nearly the colour.
int pixels(const QImage &image, QRgb color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const int difference = std::abs(qRed(pixel) - qRed(color)) + std::abs(qGreen(pixel) - qGreen(color))
                + std::abs(qBlue(pixel) - qBlue(color));
            count += difference < 30 ? 1 : 0;
        }
    }
    return count;
}

} // namespace

void ProfileViewTest::initTestCase()
{
    setUpGdal();
    const QString path = m_folder.filePath("dem.tif");
    QVERIFY(writeRaster(path, 6, 1, {0, 0, 9, 0, 0, 0}));
    const auto terrain = LiveTerrain::read(path, 1).terrain;
    const QPointF eye = terrain->toGround({0, 0});
    const ToolObserver observer{eye.x(), eye.y(), 2.0, 0.0};
    m_hidden = profileAlong(*terrain, observer, terrain->toGround({5, 0}), {0.0, 0.0});
    m_seen = profileAlong(*terrain, observer, terrain->toGround({2, 0}), {0.0, 0.0});
}

void ProfileViewTest::texts()
{
    setLanguage("FRENCH");
    ProfileView view;
    view.setDem({}, "m");
    const QLabel *verdict = view.findChild<QLabel *>();
    QVERIFY(verdict->toolTip().startsWith("Survolez"));
    QVERIFY(!button(view, "Enregistrer")->isEnabled());
    view.resize(900, 150);
    view.show();
    view.setProfile(m_hidden);
    QVERIFY(verdict->text().contains("19.5 m au-dessus")); // 2 + 7 · 50 / 20
    QVERIFY(button(view, "Enregistrer")->isEnabled());
    setLanguage("ENGLISH");
    QVERIFY(verdict->text().contains("19.5 m above"));
    QVERIFY(button(view, "Save") && button(view, "Close"));
    view.resize(300, 150);
    QVERIFY(verdict->text().size() < verdict->toolTip().size() && verdict->toolTip().contains("19.5 m above"));
    QSignalSpy close(&view, &ProfileView::closeRequested);
    button(view, "Close")->click();
    QCOMPARE(close.size(), 1);
    view.setProfile({});
    QVERIFY(verdict->text().startsWith("Move") && !button(view, "Save")->isEnabled());
}

void ProfileViewTest::mouse()
{
    ProfileView view;
    view.resize(500, 160);
    view.show();
    QWidget *canvas = view.findChild<ProfilePlot *>()->canvas();
    QSignalSpy hovered(&view, &ProfileView::hovered);
    QSignalSpy left(&view, &ProfileView::left);
    const auto moveTo = [canvas](int x) {
        QMouseEvent event(QEvent::MouseMove, QPointF(x, 10), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(canvas, &event);
    };
    moveTo(canvas->width() / 2);
    QCOMPARE(hovered.size(), 0); // there is no profile
    view.setProfile(m_hidden);
    const QImage bare = canvas->grab().toImage();
    moveTo(canvas->width() / 2);
    moveTo(canvas->width() + 50);
    QCOMPARE(hovered.size(), 2);
    QVERIFY(std::abs(hovered.at(0).at(0).toDouble() - 25.0) < 1.0);
    QCOMPARE(hovered.at(1).at(0).toDouble(), 50.0);
    QVERIFY(canvas->grab().toImage() != bare);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(canvas, &leave);
    QCOMPARE(left.size(), 1);
    QCOMPARE(canvas->grab().toImage(), bare);
    view.setCursor(20.0);
    QVERIFY(canvas->grab().toImage() != bare);
    QCOMPARE(hovered.size(), 2);
}

void ProfileViewTest::drawing()
{
    for (const bool dark : {false, true}) {
        ProfileView view;
        view.setPalette(dark ? QPalette(Qt::darkGray, Qt::black) : QPalette(Qt::lightGray, Qt::white));
        view.resize(500, 160);
        view.setProfile(m_seen);
        view.show();
        QWidget *canvas = view.findChild<ProfilePlot *>()->canvas();
        QImage picture = canvas->grab().toImage();
        QVERIFY(pixels(picture, visibleColor) > 100 && pixels(picture, hiddenColor) == 0);
        QCOMPARE(qGray(picture.pixel(5, 1)) > 128, !dark);
        view.setProfile(m_hidden);
        picture = canvas->grab().toImage();
        QVERIFY(pixels(picture, visibleColor) > 100 && pixels(picture, hiddenColor) > 100);
        view.setColors({Qt::blue, Qt::magenta});
        picture = canvas->grab().toImage();
        QVERIFY(pixels(picture, hiddenColor) == 0 && pixels(picture, qRgb(255, 0, 255)) > 100);
    }
}

void ProfileViewTest::files()
{
    setLanguage("ENGLISH");
    ProfileView view;
    view.setDem(m_folder.filePath("dem.tif"), "m");
    view.setProfile(m_hidden);
    const QString csv = m_folder.filePath("été.csv");
    writeFile(csv, "old");
    QuvoFilerDialog::answerBeforehand({csv, csv, m_folder.filePath("none/a.csv"), QString()});
    Prompt::answerBeforehand({false, true});
    save(view, 0);
    QCOMPARE(bytesOf(csv), QByteArray("old")); // the user did not want to replace it
    save(view, 0);
    QCOMPARE(bytesOf(csv), profileCsv(m_hidden));
    QCOMPARE(Prompt::takeShown().size(), 3); // two questions and a notice
    save(view, 0);
    QVERIFY(Prompt::takeShown().value(0).contains("could not be written"));
    save(view, 0);
    QVERIFY(Prompt::takeShown().isEmpty());
    QVERIFY(QuvoFilerDialog::takeShown().first().contains("dem_profile.csv"));

    const QList<QPair<QString, QByteArray>> kinds{
        {"a.png", "\x89PNG"}, {"a.SVG", "<?xml"}, {"a.pdf", "%PDF"}, {"b", "\x89PNG"}};
    for (const auto &[name, start] : kinds) {
        QuvoFilerDialog::answerBeforehand({m_folder.filePath(name)});
        save(view, 1);
        const QString file = m_folder.filePath(name) + (name == "b" ? ".png" : "");
        QVERIFY2(bytesOf(file).startsWith(start), qPrintable(file));
    }
    const QImage picture(m_folder.filePath("a.png"));
    QVERIFY(pixels(picture, visibleColor) > 100 && pixels(picture, hiddenColor) > 100);
}

QTEST_MAIN(ProfileViewTest)
#include "profileview_test.moc"
