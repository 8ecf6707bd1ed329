; Held sounds. p7: brightness 0..1 (choir: vowel, 0 "oo" to 1 "ah").

instr pad
  iBright = (p7 == 0 ? 0.3 : p7)
  iA = min(0.5, p3 * 0.3)
  kE linsegr 0, iA, 1, 0.6, 0
  k1 jspline 0.004, 0.3, 1.1
  k2 jspline 0.004, 0.3, 1.1
  kB jspline 0.12, 0.1, 0.3
  a1 vco2 0.3, p4 * (1 + k1)
  a2 vco2 0.3, p4 * (1.004 + k2)
  a3 vco2 0.3, p4 * (0.996 - k2)
  kC = 600 + 6500 * iBright * (1 + kB)
  aL butlp a1 + a2, kC
  aR butlp a1 + a3, kC
  aL buthp aL, 160
  aR buthp aR, 160
  kP = (p6 + 1) / 2
  wide aL * kE * p5 * 0.267 * (1.2 - kP), aR * kE * p5 * 0.267 * (0.2 + kP), 0.3, 0
endin

; Strings: bow noise, slower vibrato, a wooden body.
instr strings
  iBright = (p7 == 0 ? 0.45 : p7)
  kE linsegr 0, min(0.22, p3 * 0.35), 1, 0.35, 0
  kV linseg 0, 0.4, 0.0035, 10, 0.0035
  kL lfo 1, 5 + p6 * 0.4
  k1 jspline 0.002, 1, 3
  a1 vco2 0.35, p4 * (1 + kV * kL + k1)
  a2 vco2 0.35, p4 * (1.003 - kV * kL)
  aN noise 0.012, 0
  aS = a1 + a2 + butbp(aN, 5000, 4000)
  aB butbp aS, 520, 300
  aF butlp aS * 0.8 + aB * 0.5, 1200 + 6500 * iBright
  aF buthp aF, 170
  place aF * kE * p5 * 0.143, p6, 0.28, 0
endin

instr choir
  kE linsegr 0, min(0.3, p3 * 0.3), 1, 0.5, 0
  k1 jspline 0.005, 2, 5
  k2 jspline 0.005, 2, 5
  a1 vco2 0.3, p4 * (1 + k1)
  a2 vco2 0.3, p4 * (1.005 + k2)
  a3 vco2 0.3, p4 * (0.995 - k1)
  aN noise 0.03, 0
  aL vowel a1 + a2 + aN, k(p7)
  aR vowel a1 + a3 + aN, k(p7)
  kP = (p6 + 1) / 2
  wide aL * kE * p5 * 0.49 * (1.2 - kP), aR * kE * p5 * 0.49 * (0.2 + kP), 0.4, 0
endin

; Glass: rubbed rims, slow to speak.
instr glass
  kE linsegr 0, min(1.6, p3 * 0.5), 1, 1.2, 0
  kT1 jspline 0.3, 0.3, 1
  kT2 jspline 0.3, 0.3, 1
  a1 oscili 0.5 + kT1, p4 * 1.0015, giSine
  a2 oscili 0.5 - kT1, p4 * 0.9985, giSine
  a3 oscili (0.12 + kT2 * 0.3), p4 * 2.003, giSine
  a4 oscili (0.06 + kT1 * 0.2), p4 * 4.01, giSine
  place (a1 + a2 + a3 + a4) * kE * p5 * 0.0796, p6, 0.5, 0.1
endin

; Drone: open fifth far below, breathing.
instr drone
  kE linsegr 0, min(2, p3 * 0.4), 1, 1, 0
  kC jspline 120, 0.2, 0.6
  a1 vco2 0.3, p4 * 1.002
  a2 vco2 0.3, p4 * 0.998
  a3 vco2 0.2, p4 * 1.4983
  aF moogladder a1 + a2 + a3, 320 + kC, 0.2
  place aF * kE * p5 * 0.634, p6, 0.15, 0
endin

; Stab: a short bright chord tone, full width.
instr stab
  iBright = (p7 == 0 ? 0.6 : p7)
  kE linsegr 0, 0.003, 1, 0.09, 0
  a1 vco2 0.25, p4 * 1.006
  a2 vco2 0.25, p4 * 0.994
  a3 vco2 0.25, p4 * 1.0105
  a4 vco2 0.25, p4 * 0.9895
  a5 vco2 0.25, p4
  kC expseg 1, 0.25, 0.35, 1, 0.25
  kF = 500 + 7500 * iBright * kC
  aL butlp a1 + a4 * 0.4 + a5 + a3 * 0.9, kF
  aR butlp a2 + a3 * 0.4 + a5 + a4 * 0.9, kF
  aL buthp aL, 180
  aR buthp aR, 180
  kD expseg 1, 0.5, 0.5, 3, 0.3
  wide aL * kE * kD * p5 * 0.302, aR * kE * kD * p5 * 0.302, 0.16, 0.05
endin
