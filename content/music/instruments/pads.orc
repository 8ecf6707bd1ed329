; Pad: six slow saws, wide, softly filtered. p7: brightness 0..1.
instr pad
  iA = min(0.35, p3 * 0.3)
  kE linsegr 0, iA, 1, 0.5, 0
  k1 jspline 0.004, 0.3, 1.1
  k2 jspline 0.004, 0.3, 1.1
  a1 vco2 0.3, p4 * (1 + k1)
  a2 vco2 0.3, p4 * (1.003 + k2)
  a3 vco2 0.3, p4 * (0.997 - k2)
  aL butlp a1 + a2, 500 + 3800 * p7
  aR butlp a1 + a3, 500 + 3800 * p7
  kP = (p6 + 1) / 2
  wide aL * kE * p5 * 0.3 * (1.2 - kP), aR * kE * p5 * 0.3 * (0.2 + kP), 0.35, 0
endin
