#pragma once

class CoolBar;

/// The strip's geometry in the settings: new-row flags and widths (twips) by position, 1 being the
/// first band. The order of bands is not stored.
void restoreBandLayout(CoolBar &bar);
/// One replacement of the settings file.
void saveBandLayout(const CoolBar &bar);
