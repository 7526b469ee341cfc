/* Uses both libraries as a stranger would; C99 and C++17. */
#include <stdio.h>
#include <string.h>

#include "zvpcore.h"
#include "zvps.h"

int main(void) {
    const Zvp16s a[5] = {1, 3, 32767, -32768, 100};
    const Zvp16s b[5] = {0, 0, 1, -1, 23};
    const Zvp16s expected[5] = {0, 2, 16384, -16384, 62};
    Zvp16s* sum = zvpsMalloc_16s(5);
    const ZvpStatus status = sum ? zvpsAdd_16s_Sfs(a, b, sum, 5, 1) : zvpStsNoMemory;
    const int right = status == zvpStsOk && memcmp(sum, expected, sizeof expected) == 0;
    printf("%s: %s, %d threads\n", zvpsGetLibVersion()->version, zvpsStatusText(status), ownGetNumThreads());
    zvpsFree(sum);
    return right ? 0 : 1;
}
