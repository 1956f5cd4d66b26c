// The drivers of the DV50 and DV100 row packers, included into each form's namespace after that
// form's PackRow(y0, y1, u, v, out), which writes one row of 16 YUYV pixels.

int32_t DV50PackRows(const int16_t* const* blockPointers, uint8_t* const* rowPointers, int32_t rowStep) {
  if (!blockPointers || !rowPointers) return -8;
  if (rowStep < 1) return -6;
  for (int j = 0; j < 5; ++j) {
    const int16_t* b = blockPointers[j];
    for (int r = 0; r * rowStep < 8; ++r) {
      const int row = r * rowStep * 8;
      PackRow(b + row, b + 128 + row, b + 320 + row, b + 256 + row, rowPointers[j * 8 + r]);
    }
  }
  return 0;
}

int32_t DV100PackRows(const int16_t* coefficients, uint8_t* const* rowPointers, int32_t rowStep) {
  if (!coefficients || !rowPointers) return -8;
  if (rowStep < 1) return -6;
  for (int j = 0; j < 5; ++j) {
    const int16_t* mb = coefficients + j * 8 * 64;
    for (int h = 0; h < 2; ++h) {
      const int16_t* y = mb + (h ? 2 : 0) * 64;
      const int16_t* v = mb + (4 + h) * 64;
      const int16_t* u = mb + (6 + h) * 64;
      for (int r = 0; r * rowStep < 8; ++r) {
        const int row = r * rowStep * 8;
        PackRow(y + row, y + 64 + row, u + row, v + row, rowPointers[j * 16 + h * 8 + r]);
      }
    }
  }
  return 0;
}

