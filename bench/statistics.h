// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <vector>

/** Measured values of one kind. */
class Sample
{
public:
    void add(double value) { m_values.push_back(value); }
    std::size_t size() const { return m_values.size(); }

    /** The value that this share of all, 0 to 1, does not exceed; 0 without values. */
    double percentile(double share) const
    {
        if (m_values.empty())
            return 0.0;
        std::vector<double> sorted = m_values;
        std::sort(sorted.begin(), sorted.end());
        return sorted[static_cast<std::size_t>(share * double(sorted.size() - 1))];
    }

    double median() const { return percentile(0.5); }

private:
    std::vector<double> m_values;
};

/** Prints what bench/run reads: one object on one line of standard output. */
inline void printJson(const QJsonObject &object)
{
    std::puts(QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
}
