// The frameset, the head of its left column, and the list of logs. Steps of MonthPage, which puts the files in place:
//
//     MakeFrameSet(run);
//     MakeCalenderFrame(run, 2004, 5); // then MakeCalender
//     MakeLogList(run, logs);          // also without frames, at the end of the month file
#pragma once

#include "registers/log_register.h"
#include "site/month_run.h"

namespace velloria::site {

/// Writes the month file as a frameset of left column and diary.
void MakeFrameSet(MonthRun& run);

/// Begins the left column anew; calendar, log list and foot follow.
void MakeCalenderFrame(MonthRun& run, int year, int month);

/// Appends the links to the logs (or their select box) to the run's calendar file.
void MakeLogList(MonthRun& run, const registers::LogRegister& logs);

} // namespace velloria::site
