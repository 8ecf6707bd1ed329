; Wood, metal and clockwork.

; p7: decay in seconds.
instr metal
  iDec = (p7 == 0 ? 0.4 : p7)
  p3 = iDec
  a1 partial p4, 0.3, iDec
  a2 partial p4 * 1.47, 0.25, iDec * 0.8
  a3 partial p4 * 2.09, 0.25, iDec * 0.6
  a4 partial p4 * 3.37, 0.2, iDec * 0.4
  a5 partial p4 * 5.61, 0.15, iDec * 0.25
  aN noise 0.4, 0
  kN expseg 1, 0.006, 0.001, 1, 0.001
  kD linseg 1, max(0.01, p3 - 0.02), 1, 0.02, 0
  place (a1 + a2 + a3 + a4 + a5 + aN * kN) * kD * p5 * 0.698, p6, 0.15, 0.05
endin

instr wood
  p3 = 0.25
  a1 partial p4, 0.6, 0.11
  a2 partial p4 * 2.72, 0.3, 0.05
  aN noise 0.4, 0
  kN expseg 1, 0.005, 0.001, 1, 0.001
  place (a1 + a2 + aN * kN) * p5 * 1.01, p6, 0.12, 0.08
endin

; One tooth of a ratchet.
instr tooth
  p3 = 0.05
  aN noise 1, 0
  aN butbp aN, p4 * 6, p4 * 3
  kE expseg 1, 0.018, 0.001, 1, 0.001
  place aN * kE * p5 * 2.79, p6, 0.08, 0
endin

; Anvil: heavy metal on the moves in the rock.
instr anvil
  p3 = 2
  a1 partial p4, 0.35, 1.5
  a2 partial p4 * 1.51, 0.3, 1.8
  a3 partial p4 * 2.33, 0.3, 1.1
  a4 partial p4 * 3.98, 0.25, 0.6
  a5 partial p4 * 6.27, 0.2, 0.35
  aN noise 0.7, 0
  kN expseg 1, 0.02, 0.05, 0.2, 0.001, 1, 0.001
  place tanh((a1 + a2 + a3 + a4 + a5 + aN * kN) * 1.3) * p5 * 0.4, p6, 0.35, 0
endin
