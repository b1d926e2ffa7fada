// The curves that an editor gets for the ink of a sketch, made on another thread while one draws: to fit them
// takes longer than all else of an answer.
//
// Owner: shares the strokes, which never change; what is moved, converted or taken away loses its curve. The
//        sketch outlives this.
// When:  called from the thread that it was made on.
#pragma once

#include "sketch/app/sketch_model.h"
#include "sketch/core/plane.h"

#include <QObject>
#include <QThreadPool>

#include <cstddef>
#include <memory>
#include <unordered_map>

class AnswerCurves : public QObject {
public:
    explicit AnswerCurves(SketchModel& model, QObject* parent = nullptr);
    ~AnswerCurves() override;

    // As cubics_of with kAnswerTolerance, to the bit. Made now where it is not there yet.
    vnt::sketch::Path of(const vnt::sketch::StrokePtr& stroke) const;

    // For tests: until all are made; how many there are, and are made.
    void waitUntilMade() { m_making.waitForDone(); }
    std::size_t count() const { return m_fits.size(); }
    std::size_t madeCount() const;

private:
    class Fit;

    void add(const vnt::sketch::StrokePtr& stroke);
    void remove(const vnt::sketch::StrokePtr& stroke);
    void addAll(const SketchModel& model);

    std::unordered_map<vnt::sketch::StrokePtr, std::shared_ptr<Fit>> m_fits;
    QThreadPool m_making;
};
