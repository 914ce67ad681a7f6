#include "run/RunDriver.h"

int main() { return tov::RunDriver(); }
