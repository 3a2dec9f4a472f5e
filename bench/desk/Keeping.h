#pragma once

class Report;

/// How old the file of the last desk is while a thousand windows change, and what it costs.
void measureKeeping(Report &report);
/// What is in the file when the program is killed at any moment.
void measureKills(Report &report);
