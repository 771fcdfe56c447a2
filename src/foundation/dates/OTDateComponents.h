#pragma once

// Calendar fields of a wall-clock moment. Values out of range are allowed and are
// carried over by the calendar: month 0 is December of the year before, day 32 runs
// into the next month, hour 25 into the next day.
struct OTDateComponents {
    int year = 1;
    int month = 1;
    int day = 1;
    int hour = 0;
    int minute = 0;
    int second = 0;
};
