/* The public header is usable from C: a host starts the library, asks a size, copies and ends. */
#include <stdio.h>
#include <string.h>

#include <Ombrix.h>

int main(void) {
  unsigned char a[300], b[300];
  memset(a, 7, sizeof a);
  if (OX_Initialize() != OX_Success) return 1;
  if (OX_PixelFormatSize(OX_PixelFormat_V210_422_10u, 49, 2) != 512) return 2;
  OX_CopyMemory(b, a, sizeof a);
  if (memcmp(a, b, sizeof a) != 0) return 3;
  OX_Terminate();
  puts("consumer ok");
  return 0;
}
