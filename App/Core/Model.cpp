#include "App/Core/Model.h"

#include <QMetaObject>
#include <QPointer>

#include <memory>

void Model::observe(QObject* observer, std::function<void()> refresh)
{
    const auto pending = std::make_shared<bool>(false);
    const QPointer<Model> model(this);
    const auto deliver = [pending, model, refresh = std::move(refresh)] {
        *pending = false;
        if (model)
            refresh();
    };
    connect(this, &Model::willChange, observer, [observer, pending, deliver] {
        if (!std::exchange(*pending, true))
            QMetaObject::invokeMethod(observer, deliver, Qt::QueuedConnection);
    });
}
