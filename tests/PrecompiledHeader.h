#pragma once

// What nearly every test includes, compiled once for all of them. Tests still include what they
// use.
#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QList>
#include <QObject>
#include <QString>
#include <QTemporaryDir>
#include <QVariantMap>

#include <algorithm>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>
