; Basses. p7: brightness 0..1.

instr bass
  iBright = (p7 == 0 ? 0.5 : p7)
  kE linsegr 0, 0.004, 1, 0.08, 0.8, 0.04, 0
  a1 vco2 0.4, p4
  a2 vco2 0.35, p4 * 1.004, 2, 0.4
  aS oscili 0.6, p4, giSine
  kC expseg 1, 0.22, 0.22, 2, 0.1
  aF moogladder a1 + a2, 160 + p4 * 2 + 4500 * kC * iBright * p5, 0.3
  place tanh((aF + aS) * 1.3) * kE * p5 * 0.42, 0, 0, 0
endin

; Long and warm, nearly a sine.
instr sub
  kE linsegr 0, 0.012, 1, 0.1, 0
  aS oscili 1, p4, giSine
  aT vco2 0.22, p4, 12
  aT butlp aT, 420
  place tanh((aS + aT) * 1.1) * kE * p5 * 0.353, 0, 0, 0
endin

; The groove's bass: folded, with a vowel that closes.
instr growl
  iBright = (p7 == 0 ? 0.6 : p7)
  kE linsegr 0, 0.003, 1, 0.1, 0.85, 0.04, 0
  kI expseg 3.2 * iBright, 0.16, 1.2 * iBright, 1, 0.6 * iBright
  aM oscili kI * p4, p4, giSine
  aC oscili 1, p4 + aM, giSine
  a2 vco2 0.5, p4 * 1.003
  kC expseg 1, 0.2, 0.2, 1, 0.12
  aF moogladder tanh((aC + a2) * 2), 220 + p4 * 2 + 5000 * kC * iBright * p5, 0.45
  aS oscili 0.7, p4, giSine
  place tanh((aF * 0.8 + aS) * 1.3) * kE * p5 * 0.42, 0, 0, 0
endin

; Three saws that grind against each other, over a steady sub.
instr reese
  iBright = (p7 == 0 ? 0.4 : p7)
  kE linsegr 0, 0.01, 1, 0.12, 0
  a1 vco2 0.4, p4 * 1.008
  a2 vco2 0.4, p4 * 0.992
  a3 vco2 0.3, p4 * 2.003
  kL lfo 0.4, 0.42
  aF moogladder a1 + a2 + a3, 320 + 2600 * iBright * (1 + kL), 0.2
  aH buthp aF, 90
  aS oscili 0.75, p4, giSine
  aD delay aH, 0.009
  aC = tanh(aS * 1.1) * 0.8
  wide (aC + tanh(aH * 1.6) * 0.55) * kE * p5 * 0.42, (aC + tanh(aD * 1.6) * 0.55) * kE * p5 * 0.42, 0.03, 0
endin

; Jelly: the pitch falls into place and the filter wobbles. p7: how far it falls, octaves.
instr rubber
  iFall = (p7 == 0 ? 0.35 : p7)
  kE linsegr 0, 0.004, 1, 0.12, 0.75, 0.06, 0
  kB expseg 1 + iFall, 0.09, 1, 10, 1
  kW lfo 0.03 * (iFall > 0.6 ? 3 : 1), 9
  kD expseg 1, 0.7, 0.05, 5, 0.05
  kF = p4 * kB * (1 + kW * kD)
  a1 vco2 0.5, kF, 10
  aS oscili 0.7, kF, giSine
  kC expseg 1, 0.25, 0.25, 1, 0.2
  aF moogladder a1, 300 + 4200 * kC * p5, 0.5
  place tanh((aF + aS) * 1.2) * kE * p5 * 0.42, 0, 0.02, 0
endin
