#pragma once

#include "App/Platform/StatusItem.h"

#include <QList>

struct FakeStatusItem final : StatusItem {
    void show() override { shown = true; }
    void setTitle(const StatusTitle& title) override { titles << title; }
    QRect geometry() const override { return place; }

    bool shown = false;
    QList<StatusTitle> titles;
    QRect place { 100, 2, 60, 22 };
};
