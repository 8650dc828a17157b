#include "App/Core/Model.h"

#include <QTest>

struct Counter final : Model {
    int count = 0;

    void set(int value) { publish(count, value); }
};

class ModelTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void announcesBeforeItStores()
    {
        Counter model;
        QList<int> seen;
        connect(&model, &Model::willChange, this, [&] { seen << model.count; });
        model.set(1);
        model.set(2);
        QCOMPARE(seen, (QList<int> { 0, 1 }));
        QCOMPARE(model.count, 2);
    }

    void anUnchangedValueIsAnnouncedToo()
    {
        Counter model;
        int announcements = 0;
        connect(&model, &Model::willChange, this, [&] { ++announcements; });
        model.set(0);
        QCOMPARE(announcements, 1);
    }

    void deliversOnceAfterManyChanges()
    {
        Counter model;
        QList<int> read;
        model.observe(this, [&] { read << model.count; });
        model.set(1);
        model.set(2);
        model.set(3);
        QVERIFY(read.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(read, QList<int> { 3 });
    }

    void aChangeMadeWhileDeliveringIsDeliveredAgain()
    {
        Counter model;
        QList<int> read;
        model.observe(this, [&] {
            read << model.count;
            if (model.count == 1)
                model.set(2);
        });
        model.set(1);
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
        QCOMPARE(read, (QList<int> { 1, 2 }));
    }

    void nothingReachesAnObserverThatIsGone()
    {
        Counter model;
        int delivered = 0;
        {
            QObject observer;
            model.observe(&observer, [&] { ++delivered; });
            model.set(1);
        }
        model.set(2);
        QCoreApplication::processEvents();
        QCOMPARE(delivered, 0);
    }

    void nothingIsReadFromAModelThatIsGone()
    {
        int delivered = 0;
        {
            Counter model;
            model.observe(this, [&] { ++delivered; });
            model.set(1);
        }
        QCoreApplication::processEvents();
        QCOMPARE(delivered, 0);
    }
};

QTEST_GUILESS_MAIN(ModelTest)
#include "ModelTest.moc"
