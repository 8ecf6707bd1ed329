; Lead: pulse and saw with late vibrato.
instr lead
  kE linsegr 0, 0.02, 1, 0.2, 0.85, 0.12, 0
  kV linseg 0, 0.25, 0, 0.4, 0.006, 1, 0.006
  kL lfo 1, 5.3
  kF = p4 * (1 + kV * kL)
  a1 vco2 0.4, kF, 2, 0.42
  a2 vco2 0.3, kF * 1.004
  aF moogladder a1 + a2, p4 * 2 + 2200 * p5, 0.15
  place aF * kE * p5 * 0.4, p6, 0.22, 0.25
endin

; Ring: a small loudspeaker's square tone.
instr ring
  kE linsegr 0, 0.003, 1, 0.03, 0
  a1 vco2 0.4, p4, 10
  a1 butbp a1, 2400, 3000
  place a1 * kE * p5 * 0.5, p6, 0.1, 0.15
endin
