#pragma once

#include <QIcon>

// The six 12 by 12 state pictures of the shortcut list: 1 no reminder, 2 daily, 3 weekly,
// 4 monthly, 5 due, 6 expired.
QIcon StateIcon(int index);
