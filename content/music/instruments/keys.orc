; Electric piano: two-operator FM with a bell that fades first.
instr epiano
  kE expsegr 1, 0.9, 0.45, 3, 0.05, 0.25, 0.001
  kI expseg 1.6 * p5, 0.25, 0.5 * p5, 3, 0.1
  aM oscili kI * p4, p4, giSine
  aT oscili p4 * expseg:k(1.2 * p5, 0.05, 0.1, 1, 0.01), p4 * 14, giSine
  aC oscili 1, p4 + aM + aT, giSine
  kT lfo 0.12, 4.4
  kA linseg 0, 0.003, 1, 1, 1
  place aC * kE * kA * p5 * 0.22 * (1 + kT), p6, 0.2, 0.06
endin

; Pluck: short filtered saw for arpeggios. p7: brightness 0..1.
instr pluck
  kE expsegr 1, 0.3, 0.1, 1, 0.01, 0.1, 0.001
  kA linseg 0, 0.002, 1, 1, 1
  a1 vco2 0.5, p4
  a2 vco2 0.5, p4 * 1.006
  kC expseg 1, 0.15, 0.1, 1, 0.05
  aF moogladder a1 + a2, 200 + 7000 * kC * p7, 0.3
  place aF * kE * kA * p5 * 0.3, p6, 0.2, 0.25
endin
